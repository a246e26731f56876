void last() {
    int x = 1;
    return;
}

void nested() {
    {
        return;
    }
}

void before() {
    return;
    int x = 1;
}

int value() {
    int x = 1;
}

void main() {
}
