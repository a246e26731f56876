void main() { exit('\nx'); }
