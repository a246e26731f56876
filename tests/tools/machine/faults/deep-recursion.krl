#! 1:30 the stack is full
int endless(int n) { int r = endless(n + 1); return r; }
void main() { int r = endless(0); print(r); }
#! fine
int down(int n) { if (n == 0) { return 0; } int r = down(n - 1); return r; }
void main() { int r = down(50000); print(r); }
#! 1:15 the stack is full
void main() { large(); }
void large() { int a[5000000]; a[0] = 1; }
#! fine
void main() { large(); large(); }
void large() { int a[500000]; a[0] = 1; }
