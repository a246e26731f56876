int function(int parameter) {
    int p[parameter];
    int q[function];
    return 1;
}

void main() {
    int zero = 0;
    double real = 1.5;
    int minus = -3;
    int sum = 2 + 3;
    int a[0];
    int b[zero];
    int c[real];
    int d[nothing];
    int e[minus];
    int f[sum];
    int g[b];
    int h[4294967295];
    int i[main];
}
