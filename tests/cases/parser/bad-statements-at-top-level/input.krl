x = 1;

print(
1);
void main() { }
{
}
if (true) { x; }
int y = 1;
