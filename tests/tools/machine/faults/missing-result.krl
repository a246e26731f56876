#! 2:15 the result of `sign` is used, but the function returned nothing
int sign(int n) { if (n > 0) { return 1; } }
void main() { int s = sign(0); print(s); }
#! fine
int sign(int n) { if (n > 0) { return 1; } }
void main() { int s = sign(1); print(s); }
#! 2:21 the result of `half` is used, but the function returned nothing
double half(double d) { double h = d * 0.5; }
void main() { print(half(0.5)); }
#! 2:15 the result of `nothing` is used, but the function returned nothing
void nothing() { }
void main() { int a[1] = {nothing()}; print(a[0]); }
#! 2:35 the result of `name` is used, but the function returned nothing
string name(int n) { while (n > 0) { return "x"; } }
void main() { string s = "a"; s = s + "b" + name(0); print(s); }
#! fine
string name(int n) { while (n > 0) { return "x"; } return ""; }
void main() { string s = "a"; s = s + "b" + name(0); print(s); }
