int value() {
    exit(1);
}

void quit() {
    exit();
}

void main() {
    quit();
    exit(2);
}
