void main() { exit('ab'); }
