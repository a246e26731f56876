void main() {
    int x = 1;
    x = nothing;
    x = nothing[0];
}
