void main() {
    for (int i = 1.5; i < 3; i = true) {
        i = nothing;
    }
    for (other = 1; ; ) {
    }
}
