x = 1; @
void main() {
x;
% exit(1, 2);
}
void main() { }
