void main() {
    double zero = (double) 0;
    double nan = zero / zero;
    int list[6] = {nan == nan, nan != nan, nan < zero, nan <= zero, zero > nan, zero >= nan};
    print(list[0], list[1], list[2], list[3], list[4], list[5], "\n");
}
