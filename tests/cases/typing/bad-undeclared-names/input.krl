void main() {
    print(name);
    print(list[0]);
    print(function(other));
    print(1 +
        name);
}
