void main() { exit("	"); }
