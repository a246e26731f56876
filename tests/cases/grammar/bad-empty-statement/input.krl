void main() {
;
}
