void main() {
int x = 1;
double
x = 2.5;
}
