void main() {
    double d = nothing;
    int n = nothing + 1;
}
