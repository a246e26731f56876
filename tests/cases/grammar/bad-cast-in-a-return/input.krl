void main() {
return (int) y;
}
