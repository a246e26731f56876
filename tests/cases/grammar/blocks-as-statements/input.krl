void main() {
{ }
{ print(1); { print(2); } }
}
