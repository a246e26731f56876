void main() { exit(''); exit(''); exit(''); exit('€'); exit('ÿ'); }
