#{
 * A ring buffer, and a simulation of a counter that serves people.
 }#

void main() {
    int buffer[8];
    for (int bufferIndex = 0; bufferIndex < 8; bufferIndex++) { buffer[bufferIndex] = 0; }
    int head = 0;
    int tail = 0;
    int size = 0;
    int seed = 7;
    int served = 0, refused = 0, waited = 0;
    int longest = 0;
    for (int minute = 0; minute < 60; minute++) {
        int bound = 3;
        int nextRandomResult = 0;
        {
            seed = bitsInBoth((seed * 1103515245 + 12345), 2147483647);
            int dividend = seed / 256;
            nextRandomResult = dividend - dividend / bound * bound;
        }
        int arrivals = nextRandomResult;
        while (true) {
            int before = arrivals;
            arrivals--;
            if (!(before > 0)) { break; }
            boolean enqueueResult = false;
            while (true) {
                boolean isFullResult = false;
                {
                    if (size == 8) { isFullResult = true; } else { isFullResult = false; }
                }
                if (isFullResult) {
                    enqueueResult = false;
                    break;
                }
                buffer[tail] = minute;
                int dividend2 = tail + 1;
                tail = dividend2 - dividend2 / 8 * 8;
                size++;
                enqueueResult = true;
                break;
            }
            if (!enqueueResult) {
                refused++;
            }
        }
        if (size > longest) {
            longest = size;
        }
        if (minute - minute / 2 * 2 == 1 && size > 0) {
            int dequeueResult = 0;
            {
                int value = buffer[head];
                int dividend3 = head + 1;
                head = dividend3 - dividend3 / 8 * 8;
                size--;
                dequeueResult = value;
            }
            waited += minute - dequeueResult;
            served++;
        }
    }
    print("served: ", served, "\n");
    print("refused: ", refused, "\n");
    print("longest queue: ", longest, "\n");
    print("left: ", size, "\n");
    print("mean wait: ", waited / served, " minutes\n");
    int order = 0;
    while (size > 0) {
        int dequeueResult2 = 0;
        {
            int value2 = buffer[head];
            int dividend4 = head + 1;
            head = dividend4 - dividend4 / 8 * 8;
            size--;
            dequeueResult2 = value2;
        }
        int who = dequeueResult2;
        string chosen = "";
        if (size > 0) { chosen = ", "; } else { chosen = "\n"; }
        print(who, chosen);
        order += who;
    }
    boolean either = false;
    if (order - order / 2 * 2 == 0) { either = true; } else {
        boolean isFullResult2 = false;
        {
            if (size == 8) { isFullResult2 = true; } else { isFullResult2 = false; }
        }
        if (isFullResult2) { either = true; }
    }
    if (either) { print("even\n"); } else { print("odd\n"); }
    return;
}

int bitsInBoth(int left, int right) {
    int result = 0;
    int bit = 1;
    for (int count = 0; count < 64; count++) {
        int leftHalf = left / 2;
        int leftBit = left - leftHalf * 2;
        if (leftBit < 0) {
            leftBit = 1;
            leftHalf = leftHalf - 1;
        }
        int rightHalf = right / 2;
        int rightBit = right - rightHalf * 2;
        if (rightBit < 0) {
            rightBit = 1;
            rightHalf = rightHalf - 1;
        }
        if (leftBit + rightBit == 2) { result = result + bit; }
        bit = bit + bit;
        left = leftHalf;
        right = rightHalf;
    }
    return result;
}
