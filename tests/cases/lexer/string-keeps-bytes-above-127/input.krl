void main() { print("Ã© ÿ€"); }
