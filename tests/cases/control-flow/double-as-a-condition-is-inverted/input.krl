void main() {
    double zero = (double) 0;
    double half = 0.5;
    if (zero) {
        print("zero ");
    }
    if (half) {
        print("half ");
    }
    if (!half) {
        print("not half ");
    }
    print("end\n");
}
