void main() { x; @ }
