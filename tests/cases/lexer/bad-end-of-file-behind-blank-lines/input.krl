void main() {


