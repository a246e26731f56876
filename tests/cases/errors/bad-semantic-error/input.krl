void main() {

int x = 'c';
}
