void main() { x @ ; }
