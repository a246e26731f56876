void main() { x; ] }
