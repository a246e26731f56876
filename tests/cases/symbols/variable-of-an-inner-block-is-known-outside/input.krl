void main() {
{ int x = 1; }
print(x);
}
