void main() {
    for (int i = 0; i < 2; i++) {
        int x = 1;
    }
    for (int i = 0; i < 2; i++) {
    }
    if (true) {
        string x = "s";
    }
    int main = 1;
}
