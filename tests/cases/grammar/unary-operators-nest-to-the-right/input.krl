void main() {
exit(- - a);
exit(!!a);
exit(-+!a);
}
