#{ a }# #{ b
void main() { print("3"); }
#}#
