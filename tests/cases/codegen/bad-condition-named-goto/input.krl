void main() {
    if (!goto) {
    }
}
