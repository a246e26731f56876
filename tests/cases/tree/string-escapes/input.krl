void main() {
exit("q\"b\\n\nt\tr\rb\bf\fz\0s/");
}
