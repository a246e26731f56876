#{
 a }}# print("no"); } b
 }}}# void main() { print("1"); }
