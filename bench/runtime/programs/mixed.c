#include <stdio.h>

int main(void) {
    const long count = 10000000;
    double price = 0.25;
    for (long i = 0; i < count; i++) {
        printf("item %ld costs %.17g in all\n", i, price);
        price = price + 0.75;
    }
    return 0;
}
