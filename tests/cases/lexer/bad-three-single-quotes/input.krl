void main() { exit('''); }
