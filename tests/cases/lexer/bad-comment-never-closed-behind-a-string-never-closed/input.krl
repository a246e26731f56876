" #{
void main() {
    print("a", "b\n");
    " #{ x
    print("c");
}
