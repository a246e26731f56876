void main() {
exit('"');
exit('\\');
exit('\n');
exit('\t');
exit('\r');
exit('\b');
exit('\f');
exit('\0');
exit('/');
exit('a');
}
