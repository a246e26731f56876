double f(double d) {
    return d;
}

void main() {
    double list[2] = {0.5, 1.5};
    print(f(list[1]) + f(list[0]), "\n");
}
