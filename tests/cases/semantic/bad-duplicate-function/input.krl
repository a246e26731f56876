void g(int a) {
    int x = 1;
}

void g(int a, int b) {
    int x = 2;
    int y = 3;
}
