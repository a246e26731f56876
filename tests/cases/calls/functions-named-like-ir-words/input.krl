int goto() {
    return 1;
}

int call(int x) {
    return x + 1;
}

int param() {
    return 3;
}

int B1() {
    return 4;
}

int inttochar(int x) {
    return x;
}

void arg() {
    print("arg ");
}

void main() {
    arg();
    int x = goto();
    print(x, call(x), param(), B1(), inttochar(5), "\n");
}
