void main() {
exit(
"\"
); }
