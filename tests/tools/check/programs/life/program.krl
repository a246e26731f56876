// Conway's game on a torus of 6 by 6 cells.
const int SIZE = 6;

void main() {
    int cells[SIZE * SIZE] = {0};
    int next[SIZE * SIZE] = {0};
    // a glider
    cells[0 * SIZE + 1] = 1;
    cells[1 * SIZE + 2] = 1;
    cells[2 * SIZE + 0] = 1;
    cells[2 * SIZE + 1] = 1;
    cells[2 * SIZE + 2] = 1;

    for (int generation = 0; generation < 5; generation++) {
        if (generation % 4 == 0) {
            print("generation ", generation, "\n");
            for (int y = 0; y < SIZE; y++) {
                for (int x = 0; x < SIZE; x++) {
                    print(cells[y * SIZE + x] == 1 ? '#' : '.');
                }
                print("\n");
            }
        }
        for (int y = 0; y < SIZE; y++) {
            for (int x = 0; x < SIZE; x++) {
                int neighbours = 0;
                for (int dy = -1; dy <= 1; dy++) {
                    for (int dx = -1; dx <= 1; dx++) {
                        if (dx == 0 && dy == 0) continue;
                        int ny = (y + dy + SIZE) % SIZE;
                        int nx = (x + dx + SIZE) % SIZE;
                        neighbours += cells[ny * SIZE + nx];
                    }
                }
                int here = y * SIZE + x;
                if (cells[here] == 1 && (neighbours == 2 || neighbours == 3)) {
                    next[here] = 1;
                } else if (cells[here] == 0 && neighbours == 3) {
                    next[here] = 1;
                } else {
                    next[here] = 0;
                }
            }
        }
        for (int i = 0; i < SIZE * SIZE; i++) {
            cells[i] = next[i];
        }
    }

    int alive = 0;
    for (int i = 0; i < SIZE * SIZE; i++) {
        alive += cells[i];
    }
    bool stable = alive == 5;
    print("alive: ", alive, "\n");
    print("stable: ", stable, "\n");
    double density = (double) alive / (SIZE * SIZE);
    if (density > 0.1 && !(density > 0.2)) {
        print("sparse\n");
    }
    long checksum = 0;
    for (int i = 0; i < SIZE * SIZE; i++)
        checksum = (checksum * 31 + cells[i] + 1) % 4294967296;
    print("checksum: ", checksum, "\n");
}
