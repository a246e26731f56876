void main() {
    string d = "a \"b\" c";
}
