void main() {
    int list[1] = {inttodouble - 1};
}
