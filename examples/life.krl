# Conway's game of life on a torus: a glider travels, a blinker blinks.

# Brings a coordinate that is at most one step outside back to the other side.
int wrap(int place, int size) {
    if (place < 0) {
        return place + size;
    }
    if (place >= size) {
        return place - size;
    }
    return place;
}

void main() {
    int width = 16;
    int height = 10;
    int area = 160;
    int cells[area];
    int next[area];
    int i = 0;
    int x = 0;
    int y = 0;

    for (i = 0; i < area; i++) {
        cells[i] = 0;
    }
    cells[1] = 1;      # the glider: .X.
    cells[18] = 1;     #             ..X
    cells[32] = 1;     #             XXX
    cells[33] = 1;
    cells[34] = 1;
    cells[108] = 1;    # the blinker: XXX
    cells[109] = 1;
    cells[110] = 1;

    for (int generation = 0; generation <= 8; generation++) {
        # Show every fourth generation: the glider has then moved by one cell each way.
        if (generation == generation / 4 * 4) {
            print("generation ", generation, "\n");
            for (y = 0; y < height; y++) {
                string line = "";
                for (x = 0; x < width; x++) {
                    i = y * width + x;
                    if (cells[i] == 1) {
                        line += "X";
                    } else {
                        line += ".";
                    }
                }
                print(line, "\n");
            }
        }

        for (y = 0; y < height; y++) {
            for (x = 0; x < width; x++) {
                int neighbours = 0;
                for (int dy = -1; dy <= 1; dy++) {
                    for (int dx = -1; dx <= 1; dx++) {
                        i = wrap(y + dy, height) * width + wrap(x + dx, width);
                        neighbours += cells[i];
                    }
                }
                i = y * width + x;
                neighbours -= cells[i];    # the cell itself was counted too
                if (neighbours == 3 || neighbours == 2 && cells[i] == 1) {
                    next[i] = 1;
                } else {
                    next[i] = 0;
                }
            }
        }
        for (i = 0; i < area; i++) {
            cells[i] = next[i];
        }
    }
}
