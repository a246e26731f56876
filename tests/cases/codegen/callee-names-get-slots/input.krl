void a() {
}

void b() {
    a();
    int z = 1;
}

void main() {
    int z = 1;
    exit();
    print("x");
}
