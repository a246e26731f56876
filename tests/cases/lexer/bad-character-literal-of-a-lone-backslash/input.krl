void main() { exit('\'); }
