#include <stdio.h>

double celsius(double f) {
    double value32 = (double) 32;
    double five = (double) 5;
    double nine = (double) 9;
    return (f - value32) * five / nine;
}

double power(double x, int n) {
    double result = (double) 1;
    for (int i = 0; i < n; i++) { result = result * x; }
    return result;
}

double root(double x) {
    double one = (double) 1;
    double two = (double) 2;
    double low = (double) 0, high = x;
    if (x < one) { high = one; }
    for (int i = 0; i < 60; i++) {
        double middle = (low + high) / two;
        if (middle * middle < x) { low = middle; } else { high = middle; }
    }
    return low;
}

int rounded(double x) {
    double zero = (double) 0;
    if (x < zero) { return whole2(x - 0.5); }
    return whole2(x + 0.5);
}

void main() {
    double two = (double) 2;
    double three = (double) 3;
    double zero = (double) 0;
    double hundred = (double) 100;
    double seven = (double) 7;
    double ten = (double) 10;
    double one = (double) 1;
    for (int f = 14; f <= 50; f += 18) {
        double fDouble = (double) f;
        print(f, " F = ", celsius(fDouble), " C\n");
    }
    double week[7] = {1.5, two, -0.5, three, 4.25, zero, 1.25};
    int warm = 0;
    double highest = week[0], lowest = week[0];
    for (int i = 0; i < 7; i++) {
        if (week[i] > highest) { highest = week[i]; }
        if (week[i] < lowest) { lowest = week[i]; }
        if (week[i] >= 1.5) { warm++; }
    }
    print("from ", lowest, " to ", highest, ", ", warm, " warm days\n");
    int count = 7;
    double averageResult = (double) 0;
    {
        double sum = (double) 0;
        for (int i2 = 0; i2 < count; i2++) { sum += week[i2]; }
        double countDouble = (double) count;
        averageResult = sum / countDouble;
    }
    double mean = averageResult;
    print("mean in hundredths: ", rounded(mean * hundred), "\n");

    double square = (double) 0;
    for (i = 0; i < 7; i++) {
        double d = week[i] - mean;
        square += d * d;
    }
    print("deviation in tenths: ", rounded(root(square / seven) * ten), "\n");
    print("2^10 = ", power(two, 10), ", 1.5^3 = ", power(1.5, 3), "\n");
    double tiny = 0.001;
    int steps = 0;
    while (tiny < one) {
        tiny = tiny * two;
        steps++;
    }
    print(steps, " steps\n");
    int whole = 7;
    int value = whole / 2;
    double valueDouble = (double) value;
    double half = valueDouble;
    print(whole, " ", half, " ", rounded(-2.5), " ", rounded(2.4), "\n");
    return;
}

# The double without what is behind its point, between -2^62 and 2^62.
int whole2(double value) {
    double zero = (double) 0;
    double rest = value;
    if (value < zero) {
        rest = zero - value;
    }
    int step = 1;
    double size = (double) step;
    while (size <= rest) {
        size = size + size;
        step = step + step;
    }
    int result = 0;
    while (step > 0) {
        if (size <= rest) {
            rest = rest - size;
            result = result + step;
        }
        size = size * 0.5;
        step = step / 2;
    }
    if (value < zero) {
        result = 0 - result;
    }
    return result;
}
