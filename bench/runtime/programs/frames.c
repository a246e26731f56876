#include <stdio.h>
#include <stdlib.h>

static long descend(long depth) {
    char* held = malloc(32);
    snprintf(held, 32, "frame %ld", depth);
    if (depth == 0) {
        const long count = 10000000;
        for (long i = 0; i < count; i++) {
            printf("%ld\n", i);
        }
        free(held);
        return 0;
    }
    const long sum = descend(depth - 1);
    if (depth == 40000) {
        printf("%s\n", held);
    }
    free(held);
    return sum + 1;
}

int main(void) {
    printf("%ld\n", descend(40000));
    return 0;
}
