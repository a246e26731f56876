# Lines of text, an integer and a double. Quarters read alike in both languages.
void main() {
    int count = 10000000;
    double price = 0.25;
    for (int i = 0; i < count; i++) {
        print("item ", i, " costs ", price, " in all\n");
        price = price + 0.75;
    }
}
