void main() {
exit(1, 2);
exit
(1,
2, 3);
}
