# Multiplies matrices of 100 rows and columns, four times.
void main() {
    int size = 100;
    double left[10000];
    double right[10000];
    double product[10000];
    double value = 0.5;
    double step = 0.001;
    int at = 0;
    while (at < 10000) {
        left[at] = value;
        right[at] = 1.5 - value;
        value = value + step;
        at++;
    }
    int none = 0;
    double zero = (double) none;
    for (int round = 0; round < 4; round++) {
        for (int row = 0; row < size; row++) {
            for (int column = 0; column < size; column++) {
                double sum = zero;
                int i = row * size;
                int j = column;
                int end = i + size;
                while (i < end) {
                    sum = sum + left[i] * right[j];
                    i++;
                    j += size;
                }
                int place = row * size + column;
                product[place] = sum;
            }
        }
        print(product[0], " ", product[5050], " ", product[9999], "\n");
        left[round] = product[round];
    }
}
