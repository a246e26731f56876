void main() {
    int inttodouble = 5;
}
