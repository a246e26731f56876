void main() { exit(""); exit(" "); exit("it's"); }
