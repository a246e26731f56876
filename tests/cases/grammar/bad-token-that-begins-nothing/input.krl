void main() { }
]
