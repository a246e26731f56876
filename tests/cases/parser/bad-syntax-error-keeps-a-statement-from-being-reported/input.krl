void main() { x ] }
