/*
 * A ring buffer, and a simulation of a counter that serves people.
 */
int buffer[8];
int head = 0, tail = 0, size = 0;
unsigned int seed = 7;

int nextRandom(int bound) {
    seed = (seed * 1103515245 + 12345) & 2147483647;
    return (seed >> 8) % bound;
}

bool isFull() {
    return size == 8;
}

bool enqueue(int value) {
    if (isFull()) {
        return false;
    }
    buffer[tail] = value;
    tail = (tail + 1) % 8;
    size++;
    return true;
}

int dequeue() {
    int value = buffer[head];
    head = (head + 1) % 8;
    size--;
    return value;
}

int main(void) {
    int served = 0, refused = 0, waited = 0;
    int longest = 0;
    for (int minute = 0; minute < 60; minute++) {
        int arrivals = nextRandom(3);
        while (arrivals-- > 0) {
            if (!enqueue(minute)) {
                refused++;
            }
        }
        if (size > longest) {
            longest = size;
        }
        if (minute % 2 == 1 && size > 0) {
            waited += minute - dequeue();
            served++;
        }
    }
    printf("served: %d\n", served);
    printf("refused: %d\n", refused);
    printf("longest queue: %d\n", longest);
    printf("left: %d\n", size);
    printf("mean wait: %d minutes\n", waited / served);
    int order = 0;
    while (size > 0) {
        int who = dequeue();
        printf("%d%s", who, size > 0 ? ", " : "\n");
        order += who;
    }
    if (order % 2 == 0 || isFull()) printf("even\n");
    else printf("odd\n");
    return 0;
}
