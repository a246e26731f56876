void main() {
int a[2];
double a = 0.5;
int b = 1;
int b[2];
}
