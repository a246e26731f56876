int x = 1;

void f() {
    int x = 2;
}

int y = 3;
