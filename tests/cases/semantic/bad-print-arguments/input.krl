void g() {
}

void main() {
    print();
    print(g(), nothing);
    print(nothing, other);
    print(1, nothing, g());
    print(
        1,
        g()
    );
    print(
    );
}
