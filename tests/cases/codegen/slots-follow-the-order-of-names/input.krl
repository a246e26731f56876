void f() {
    int t1 = 1;
    int arr[3];
    int a = 2;
    arr[2] = 3;
}

void main() {
    int z = 1;
    int a = 2;
    int _b = 3;
    int Z9 = 4;
    int Z10 = 5;
}
