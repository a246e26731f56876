# Sorts the same pseudo-random numbers by insertion and by merging.
#
# An array cannot be passed to a function, so each algorithm has an array of its own, which it
# fills, sorts and prints.

int mod(int a, int b) {
    return a - a / b * b;
}

# The "minimal standard" generator of Park and Miller. A fixed seed gives the same numbers on
# every run. The product fits easily: an int has 64 bits, although a literal has only 32.
int nextRandom(int state) {
    return mod(16807 * state, 2147483647);
}

# Moves each number down to its place among those before it.
void insertionSort() {
    int count = 16;    # an array's size is a literal or a variable initialised by one
    int numbers[count];
    int state = 42;
    int i = 0;         # one i for all loops: a function has one scope, blocks open none

    for (i = 0; i < count; i++) {
        state = nextRandom(state);
        numbers[i] = mod(state, 1000);
    }

    for (i = 1; i < count; i++) {
        int moving = numbers[i];
        int hole = i;
        while (hole > 0) {
            int below = hole - 1;    # an index is one name or one literal, never "hole - 1"
            if (numbers[below] <= moving) {
                break;
            }
            numbers[hole] = numbers[below];
            hole = below;
        }
        numbers[hole] = moving;
    }

    print("insertion sort:");
    for (i = 0; i < count; i++) {
        print(" ", numbers[i]);
    }
    print("\n");
}

# Merges sorted runs of 1, 2, 4, ... numbers until one run is left.
void mergeSort() {
    int count = 16;
    int numbers[count];
    int merged[count];
    int state = 42;
    int i = 0;

    for (i = 0; i < count; i++) {
        state = nextRandom(state);
        numbers[i] = mod(state, 1000);
    }

    for (int length = 1; length < count; length = length * 2) {
        int start = 0;
        while (start < count) {
            # The runs are [start, middle) and [middle, end).
            int middle = start + length;
            if (middle > count) {
                middle = count;
            }
            int end = middle + length;
            if (end > count) {
                end = count;
            }

            int left = start;
            int right = middle;
            for (int to = start; to < end; to++) {
                # && always evaluates both sides, so the bounds are asked for first, by themselves.
                boolean takeLeft = false;
                if (right == end) {
                    takeLeft = true;
                } elseif (left < middle) {
                    if (numbers[left] <= numbers[right]) {
                        takeLeft = true;
                    }
                }
                if (takeLeft) {
                    merged[to] = numbers[left];
                    left++;
                } else {
                    merged[to] = numbers[right];
                    right++;
                }
            }
            start = end;
        }
        for (i = 0; i < count; i++) {
            numbers[i] = merged[i];
        }
    }

    print("merge sort:    ");
    for (i = 0; i < count; i++) {
        print(" ", numbers[i]);
    }
    print("\n");
}

void main() {
    insertionSort();
    mergeSort();
}
