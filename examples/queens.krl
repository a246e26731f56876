# Places eight queens on a chessboard so that none attacks another, by backtracking.
#
# Functions cannot share an array, so the search is a loop that steps down a row when a queen
# found a place, and up again when it found none.

void main() {
    int size = 8;
    int column[size];    # column[r] is where the queen of row r stands
    int row = 0;
    int solutions = 0;
    column[0] = -1;

    while (row >= 0) {
        column[row]++;
        if (column[row] == size) {
            row--;
            continue;
        }

        boolean safe = true;
        for (int above = 0; above < row; above++) {
            int apart = column[above] - column[row];
            int rows = row - above;
            if (apart == 0 || apart == rows || apart == -rows) {
                safe = false;
                break;
            }
        }
        if (!safe) {
            continue;
        }

        if (row < size - 1) {
            row++;
            column[row] = -1;
            continue;
        }

        solutions++;
        if (solutions == 1) {
            for (int r = 0; r < size; r++) {
                string line = "";
                for (int c = 0; c < size; c++) {
                    if (column[r] == c) {
                        line += " Q";
                    } else {
                        line += " .";
                    }
                }
                print(line, "\n");
            }
        }
    }
    print(solutions, " solutions\n");
}
