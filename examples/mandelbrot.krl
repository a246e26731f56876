# Draws the Mandelbrot set in text: the darker the character, the longer the point z = 0 stays
# near under z = z * z + c.

# How many steps it takes until |z| passes 2; at most the limit.
int escapeTime(double cx, double cy, int limit) {
    # A whole number cannot stand as a double literal ("4.0"), so these come from casts.
    double zero = (double) 0;
    double two = (double) 2;
    double four = (double) 4;
    double x = zero;
    double y = zero;
    int steps = 0;

    while (x * x + y * y <= four && steps < limit) {
        double nextX = x * x - y * y + cx;
        y = two * x * y + cy;
        x = nextX;
        steps++;
    }
    return steps;
}

void main() {
    int columns = 64;
    int rows = 25;
    int limit = 27;
    character shades[10] = {' ', '.', ':', '-', '=', '+', '*', '%', '@', '#'};

    for (int row = 0; row < rows; row++) {
        string line = "";
        for (int column = 0; column < columns; column++) {
            double right = (double) column;
            double down = (double) row;
            double cx = right * 0.0421875 - 2.1;
            double cy = down * 0.1 - 1.2;
            int shade = escapeTime(cx, cy, limit) / 3;
            character pixel = shades[shade];
            string text = (string) pixel;    # + joins strings only
            line += text;
        }
        print(line, "|\n");
    }
}
