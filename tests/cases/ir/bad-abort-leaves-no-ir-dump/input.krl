void main() {
    break;
}
