void g() {
    print("called\n");
}

void main() {
    exit(g());
}
