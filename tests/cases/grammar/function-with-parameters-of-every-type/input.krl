int f(int a, double b, boolean c, character d, string e) { return a; }
double g(int a) { return 0.5; }
boolean h() { return true; }
character i() { return 'c'; }
string j() { return "s"; }
void main() { print(f(1, 0.5, true, 'x', "y"), g(1), h(), i(), j()); }
