void main() {
    int a[2] = {4, 5}, n = nothing + 1.5, m = f();
    print(a[1], "\n");
}
