void main() {
for (;;) x = 1;
}
