int number() {
    return 5;
}

double real() {
    return 2.5;
}

double whole() {
    return 2.0;
}

double copied(double d) {
    return d;
}

string text() {
    return "t";
}

boolean yes() {
    return true;
}

character letter() {
    return 'c';
}

int nothing() {
}

void main() {
}
