void main() {
    double zero = (double) 0;
    double nan = zero / zero;
    if (nan == nan) {
        print("== ");
    }
    if (nan != nan) {
        print("!= ");
    }
    if (nan < nan) {
        print("< ");
    }
    if (nan <= nan) {
        print("<= ");
    }
    if (nan > nan) {
        print("> ");
    }
    if (nan >= nan) {
        print(">= ");
    }
    print("end\n");
}
