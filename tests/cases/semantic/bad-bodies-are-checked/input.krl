void main() {
    {
        a = 1;
    }
    if (true) {
        b = 1;
    } elseif (true) {
        c = 1;
    } else {
        d = 1;
    }
    while (true) {
        e = 1;
    }
}
