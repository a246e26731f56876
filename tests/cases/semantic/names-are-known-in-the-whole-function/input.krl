void main() {
    late = 1;
    print(late);
    {
        int inner = 5;
    }
    print(inner, "\n");
    int late = 2;
}
