# Looks numbers up in a sorted table, halving the part that is left at every step.

void main() {
    int count = 12;
    int table[count] = {2, 3, 5, 7, 11, 13, 17, 19, 23, 29, 31, 37};
    int wanted[5] = {23, 2, 37, 24, 100};

    for (int query = 0; query < 5; query++) {
        int key = wanted[query];
        int low = 0;
        int high = count - 1;
        int found = -1;
        int steps = 0;

        while (low <= high && found < 0) {
            int middle = (low + high) / 2;
            steps++;
            if (table[middle] == key) {
                found = middle;
            } elseif (table[middle] < key) {
                low = middle + 1;
            } else {
                high = middle - 1;
            }
        }

        if (found >= 0) {
            print(key, " is at index ", found, ", found in ", steps, " steps\n");
        } else {
            print(key, " is not there, known after ", steps, " steps\n");
        }
    }
}
