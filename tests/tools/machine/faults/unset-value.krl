#! 2:7 `a[1]` is read, but nothing has set it
int a[3] = {1};
print(a[1]);
#! 3:7 `a[2]` is read, but nothing has set it
int a[3] = {1, 2};
int i = 2;
print(a[i]);
#! fine
int a[3] = {1, 2};
int i = 1;
print(a[i]);
#! 2:1 `counts[0]` is read, but nothing has set it
int counts[2];
counts[0] += 1;
#! 1:5 `x` is declared nowhere, and nothing has set it
if (x == 1) { print("one"); }
#! 1:8 `done` is declared nowhere, and nothing has set it
while (!done) { exit(); }
#! 2:1 `step` is declared nowhere, and nothing has set it
int i = 1;
i += step;
#! 2:1 `n` is declared nowhere, and nothing has set it
int a[2] = {1, 2};
a[n] = 1;
#! 2:7 `later` is read, but nothing has set it
boolean early = true;
print(later);
int later = 1;
#! fine
for (int i = 0; i < 2; i++) {
    if (i > 0) { print(later); }
    int later = i;
}
#! 1:9 `x` is read, but nothing has set it
int x = x + 1;
#! 2:34 `inner` is read, but nothing has set it
boolean no = false;
if (no) { int inner = 1; } print(inner);
#! fine
boolean yes = true;
if (yes) { int inner = 1; } print(inner);
#! 1:26 nothing was passed for the parameter `n`
void main(int n) { print(n); }
#! fine
void main(int n) { n = 1; print(n); }
#! 4:1 `s[1]` is read, but nothing has set it
string s[2];
int i = 1;
s[0] = "a";
print(s[i]);
#! 2:1 `b` is read, but nothing has set it
int a[2] = {1, 2};
a[b] = 1;
int b = 0;
#! 6:20 `local` is read, but nothing has set it
void set() { int local = 1; print(local); }
void main() {
    set();
    get();
}
void get() { print(local); int local = 2; }
#! 1:29 nothing was passed for the parameter `d`
void half(double d) { print(d * 0.5); }
void main() { half(2.0); }
#! 2:26 nothing was passed for the parameter `n`
void main() { int a[1] = {next()}; print(a[0]); }
int next(int n) { return n + 1; }
