#include <stdio.h>
#include <stdlib.h>
#include <string.h>

struct string {
    char *text;
    size_t length;
};

static struct string make(size_t length) {
    const struct string made = {malloc(length + 1), length};
    made.text[length] = '\0';
    return made;
}

static struct string append(struct string left, const char *right, size_t length) {
    const struct string longer = make(left.length + length);
    memcpy(longer.text, left.text, left.length);
    memcpy(longer.text + left.length, right, length);
    free(left.text);
    return longer;
}

int main(void) {
    const long rounds = 100000;
    const long steps = 100;
    struct string text = make(0);
    for (long round = 0; round < rounds; round++) {
        free(text.text);
        text = make(0);
        for (long step = 0; step < steps; step++) {
            text = append(text, "0123456789", 10);
        }
    }
    printf("%s\n", text.text);
    free(text.text);
    return 0;
}
