void main() {
int n = 65;
double d = (double) n;
character c = (character) 66;
int i = (int) 'C';
string s = (string) 0.5;
print(d, c, i, s);
}
