void main() {
]
}
