int f() {
    return 1.5;
}

int g() {
    return;
}

void h() {
    return nothing;
}

int k() {
    return nothing;
}

void main() {
    if (true) {
        return
            1;
    }
}
