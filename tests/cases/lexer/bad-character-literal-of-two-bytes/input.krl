void main() { exit('é'); }
