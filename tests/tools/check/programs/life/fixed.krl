# Conway's game on a torus of 6 by 6 cells.

void main() {
    int SIZE = 6;
    int cells[36] = {0};
    int next[36] = {0};
    # a glider
    int cellsIndex = 0 * SIZE + 1;
    cells[cellsIndex] = 1;
    int cellsIndex2 = 1 * SIZE + 2;
    cells[cellsIndex2] = 1;
    int cellsIndex3 = 2 * SIZE + 0;
    cells[cellsIndex3] = 1;
    int cellsIndex4 = 2 * SIZE + 1;
    cells[cellsIndex4] = 1;
    int cellsIndex5 = 2 * SIZE + 2;
    cells[cellsIndex5] = 1;

    for (int generation = 0; generation < 5; generation++) {
        if (generation - generation / 4 * 4 == 0) {
            print("generation ", generation, "\n");
            for (int y = 0; y < SIZE; y++) {
                for (int x = 0; x < SIZE; x++) {
                    int cellsIndex6 = y * SIZE + x;
                    character chosen = ' ';
                    if (cells[cellsIndex6] == 1) { chosen = '#'; } else { chosen = '.'; }
                    print(chosen);
                }
                print("\n");
            }
        }
        for (y = 0; y < SIZE; y++) {
            for (x = 0; x < SIZE; x++) {
                int neighbours = 0;
                for (int dy = -1; dy <= 1; dy++) {
                    for (int dx = -1; dx <= 1; dx++) {
                        if (dx == 0 && dy == 0) { continue; }
                        int dividend = y + dy + SIZE;
                        int ny = dividend - dividend / SIZE * SIZE;
                        int dividend2 = x + dx + SIZE;
                        int nx = dividend2 - dividend2 / SIZE * SIZE;
                        int cellsIndex7 = ny * SIZE + nx;
                        neighbours += cells[cellsIndex7];
                    }
                }
                int here = y * SIZE + x;
                if (cells[here] == 1 && (neighbours == 2 || neighbours == 3)) {
                    next[here] = 1;
                } elseif (cells[here] == 0 && neighbours == 3) {
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
    for (i = 0; i < SIZE * SIZE; i++) {
        alive += cells[i];
    }
    boolean stable = false;
    if (alive == 5) { stable = true; }
    print("alive: ", alive, "\n");
    print("stable: ", stable, "\n");
    double aliveDouble = (double) alive;
    int value = SIZE * SIZE;
    double valueDouble = (double) value;
    double density = aliveDouble / (valueDouble);
    if (density > 0.1 && !(density > 0.2)) {
        print("sparse\n");
    }
    int checksum = 0;
    for (i = 0; i < SIZE * SIZE; i++) {
        int dividend3 = checksum * 31 + cells[i] + 1;
        int divisor = 4 * 1000000000 + 294967296;
        checksum = dividend3 - dividend3 / divisor * divisor;
    }
    print("checksum: ", checksum, "\n");
}
