{
int x = 1;
}
for (int i = 0; ; ) { }
void main() {
int x = 2;
int i = 3;
}
