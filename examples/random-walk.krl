# A walker on a line steps left or right at random, and turns back at the walls.

int mod(int a, int b) {
    return a - a / b * b;
}

# A linear congruential generator modulo 2^31; its high bits are the good ones.
int nextRandom(int state) {
    int modulus = 65536;
    modulus = modulus * 32768;    # 2147483648 itself does not fit a literal's 32 bits
    return mod(1103515245 * state + 12345, modulus);
}

# Where the walker stands after one step that the generator's state decides.
int step(int position, int state, int width) {
    int coin = mod(state / 65536, 2);
    if (coin == 0) {
        position--;
    } else {
        position++;
    }
    if (position < 0) {
        return 1;
    }
    if (position == width) {
        return width - 2;
    }
    return position;
}

void show(int position, int width) {
    string line = "";
    for (int i = 0; i < width; i++) {
        if (i == position) {
            line += "@";
        } else {
            line += ".";
        }
    }
    print(line, "\n");
}

void main() {
    int width = 21;
    int visits[width];
    int i = 0;
    for (i = 0; i < width; i++) {
        visits[i] = 0;    # an array holds whatever the stack held until it is filled
    }

    int state = 2024;
    int position = 10;
    for (int time = 0; time < 5000; time++) {
        if (time < 12) {
            show(position, width);
        }
        visits[position]++;
        state = nextRandom(state);
        position = step(position, state, width);
    }

    print("visits in 5000 steps:\n");
    for (i = 0; i < width; i++) {
        print("place ", i, ": ", visits[i], "\n");
    }
}
