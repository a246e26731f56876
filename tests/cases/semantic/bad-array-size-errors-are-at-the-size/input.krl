void main() {
    int zero = 0;
    int a[
        0
    ];
    int b[
        zero
    ];
    int c[
        nothing
    ];
}
