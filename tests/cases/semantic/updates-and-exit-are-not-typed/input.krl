void main() {
    int x = 1;
    x += 2.5;
    nothing -= "s";
    counter++;
    --nothing;
    exit(other);
}
