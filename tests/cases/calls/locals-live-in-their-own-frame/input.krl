int f(int depth) {
    int list[3] = {depth, depth * 10, depth * 100};
    int inner = 0;
    if (depth > 0) {
        inner = f(depth - 1);
    }
    return list[0] + list[1] + list[2] + inner;
}

void main() {
    print(f(3), "\n");
}
