void main() { character c = '#'; print(c); }
