void main() {
int x = true;
y = 1;
print(z);
}
