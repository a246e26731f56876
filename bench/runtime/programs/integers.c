#include <stdio.h>

int main(void) {
    const long count = 10000000;
    for (long i = 0; i < count; i++) {
        printf("%ld\n", i);
    }
    return 0;
}
