string f() {
    return "same";
}

double g() {
    return 0.5;
}

void main() {
    string a = "other";
    string b = "same";
    string c = "a\tb";
    string d = "a	b";
    string e = "a\\tb";
    double x = 0.50;
    double y = 1.5;
}
