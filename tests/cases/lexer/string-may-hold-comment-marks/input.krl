void main() { print("# #{ }# //"); }
