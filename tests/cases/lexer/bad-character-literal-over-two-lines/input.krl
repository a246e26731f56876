void main() { exit('
'); }
