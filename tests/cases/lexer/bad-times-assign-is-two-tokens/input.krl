void main() { exit(x*=1); }
