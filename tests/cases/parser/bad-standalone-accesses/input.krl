void main() {
x;
a[0];
a[i]
;
f();
}
