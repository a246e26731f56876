void main() {
exit("a\tb\\");
exit("\n\r\b\f\0\"\'");
exit("\q\x\N\1\ \%");
exit("'a'");
exit("\\n");
exit("\"\"");
}
