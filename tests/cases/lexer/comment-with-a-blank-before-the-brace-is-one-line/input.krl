# {
void main() { print("4"); }
# }#
