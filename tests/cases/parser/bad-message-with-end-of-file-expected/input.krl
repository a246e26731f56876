void main() { }
)
