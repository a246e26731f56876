int f() {
    return 3;
}

void main() {
    print(f());
}
