// Strings end in a NUL, as Krel's do; how long they are is found out each time, as C programs
// mostly do, or with KNOWN_LENGTHS kept beside the text, as the runtime does.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

struct string {
    char* text;
    size_t length;
};

static struct string make(size_t length) {
    const struct string made = {malloc(length + 1), length};
    made.text[length] = '\0';
    return made;
}

static size_t lengthOf(struct string string) {
#ifdef KNOWN_LENGTHS
    return string.length;
#else
    return strlen(string.text);
#endif
}

static struct string append(struct string left, const char* right) {
    const size_t before = lengthOf(left);
    const size_t added = strlen(right);
    const struct string longer = make(before + added);
    memcpy(longer.text, left.text, before);
    memcpy(longer.text + before, right, added);
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
            text = append(text, "0123456789");
        }
    }
    printf("%s\n", text.text);
    free(text.text);
    return 0;
}
