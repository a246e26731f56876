void main() {
    boolean b = !3;
    int i = -"text";
    int j = -nothing;
}
