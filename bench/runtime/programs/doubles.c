// Seventeen digits are what it takes for every double to read back as the same value, which the
// Krel program's text does.
#include <stdio.h>

#ifndef FORMAT
#define FORMAT "%.17g\n"
#endif

int main(void) {
    const long count = 10000000;
    double value = 0.7;
    for (long i = 0; i < count; i++) {
        printf(FORMAT, value);
        value = value * 1.0000013;
    }
    return 0;
}
