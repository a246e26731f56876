void f() { }
void main() {
int i = 0;
for (;;) { }
for (int j = 0, k = 1; j < k; j++) { }
for (i = 0; i; i = 1) { }
for (i += 1; ; i -= 1) { }
for (i++; ; i--) { }
for (++i; ; --i) { }
for ((i++); ; (--i)) { }
for (f(); ; f()) { }
for (int a[1]; ; ) { }
}
