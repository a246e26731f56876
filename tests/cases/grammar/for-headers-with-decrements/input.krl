void main() {
int i = 3;
for (i--; i; i--) {
print(i);
}
for (--i; ; ++i) { break; }
}
