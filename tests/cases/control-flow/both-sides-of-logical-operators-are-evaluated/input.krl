boolean show(string name, boolean value) {
    print(name);
    return value;
}

void main() {
    boolean a = show("1", false) && show("2", true);
    boolean b = show("3", true) || show("4", false);
    print(" ", a, " ", b, "\n");
}
