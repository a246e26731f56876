int number() {
    return 7;
}

double real() {
    return 2.5;
}

boolean yes() {
    return true;
}

character letter() {
    return 'c';
}

string text() {
    return "t";
}

void main() {
    int i = number();
    double d = real();
    boolean b = yes();
    character c = letter();
    string s = text();
}
