void main() {
    int variable = 1;
    variable();
    int x = nothing(other);
}
