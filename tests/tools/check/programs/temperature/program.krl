#include <stdio.h>

double celsius(double f) {
    return (f - 32) * 5 / 9;
}

double power(double x, int n) {
    double result = 1.0;
    for (int i = 0; i < n; i++) result *= x;
    return result;
}

double root(double x) {
    double low = 0.0, high = x;
    if (x < 1.0) high = 1.0;
    for (int i = 0; i < 60; i++) {
        double middle = (low + high) / 2;
        if (middle * middle < x) low = middle;
        else high = middle;
    }
    return low;
}

float average(float values[], int count) {
    float sum = 0;
    for (int i = 0; i < count; i++) sum += values[i];
    return sum / count;
}

int rounded(double x) {
    if (x < 0) return (int) (x - 0.5);
    return (int) (x + 0.5);
}

int main() {
    for (int f = 14; f <= 50; f += 18) {
        printf("%d F = %g C\n", f, celsius(f));
    }
    float week[7] = {1.5, 2, -0.5, 3.0, 4.25, 0, 1.25};
    int warm = 0;
    float highest = week[0], lowest = week[0];
    for (int i = 0; i < 7; i++) {
        if (week[i] > highest) highest = week[i];
        if (week[i] < lowest) lowest = week[i];
        if (week[i] >= 1.5) warm++;
    }
    printf("from %g to %g, %d warm days\n", lowest, highest, warm);
    double mean = average(week, 7);
    printf("mean in hundredths: %d\n", rounded(mean * 100));

    double square = 0;
    for (int i = 0; i < 7; i++) {
        double d = week[i] - mean;
        square += d * d;
    }
    printf("deviation in tenths: %d\n", rounded(root(square / 7) * 10));
    printf("2^10 = %g, 1.5^3 = %g\n", power(2.0, 10), power(1.5, 3));
    double tiny = 1e-3;
    int steps = 0;
    while (tiny < 1.0) {
        tiny *= 2;
        steps++;
    }
    printf("%d steps\n", steps);
    int whole = 7.9;
    double half = whole / 2;
    printf("%d %g %d %d\n", whole, half, rounded(-2.5), rounded(2.4));
    return 0;
}
