void main(int argc) {
    print(argc, "\n");
}
