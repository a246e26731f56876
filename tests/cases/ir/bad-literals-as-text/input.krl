void main() {
    int a = 007;
    int b = 2147483648;
    int c = 9999999999;
    int d = 99999999999999999999;
    double e = 3.141592653589793;
    double f = 2.0;
    double g = 0.1;
    double h = 100000.25;
    boolean i = false;
}
