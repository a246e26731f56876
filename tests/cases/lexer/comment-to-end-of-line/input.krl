# int x = "
void main() { # { print("no"); }
int # the type
x = # the name
5; print(x); }
# last