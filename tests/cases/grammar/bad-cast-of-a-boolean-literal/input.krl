void main() {
string s = (string) true;
}
