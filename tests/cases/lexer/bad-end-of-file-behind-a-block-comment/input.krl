void main() {
#{

}#