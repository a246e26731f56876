void step() {
}

int next() {
    return 1;
}

void main() {
    int n = 1;
    for (
        int
        i
        =
        1.5;
        next
        (
        );
        n
        =
        true
    ) {
    }
    for (
        n
        =
        missing;
        1
        <
        next();
        next
        (
        )
    ) {
    }
    for (
        step
        (
        1
        );
        (
        next());
        n
        =
        n
        +
        1.5
    ) {
    }
}
