int number(int n) {
    int list[2];
    return n;
    return list[n];
    return list[0];
    return (n);
    return n + 1;
    return 5;
    return -5;
    return number(n);
}

string text() {
    return "a - b";
}

character letter() {
    return 'c';
}

boolean yes() {
    return true;
}

double half() {
    return 0.50;
}

void nothing() {
    return;
}

void main() {
}
