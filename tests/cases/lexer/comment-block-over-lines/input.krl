#{ one {
 print("no"); # two
 " three }# void main() { print("1"); }
