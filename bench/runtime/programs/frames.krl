# Prints at the bottom of a deep recursion, each frame of which holds a string until it returns.
int descend(int depth) {
    string number = (string) depth;
    string held = "frame " + number;
    if (depth == 0) {
        int count = 10000000;
        for (int i = 0; i < count; i++) {
            print(i, "\n");
        }
        return 0;
    }
    int above = depth - 1;
    int sum = descend(above);
    if (depth == 40000) {
        print(held, "\n");
    }
    return sum + 1;
}

void main() {
    int depth = descend(40000);
    print(depth, "\n");
}
