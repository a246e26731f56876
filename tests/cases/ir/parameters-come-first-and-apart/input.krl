void f(int a, double b, boolean c, character d, string e) {
    int x = 1;
    int y = 2;
}

void empty(int a) {
}

int none(int a) {
}

void main() {
}
