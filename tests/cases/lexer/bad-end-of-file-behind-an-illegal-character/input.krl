void main() {

@