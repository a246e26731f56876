void main() {
exit('\n');
exit('\t');
exit('\r');
exit('\b');
exit('\f');
exit('\0');
exit('\\');
exit('\'');
exit('\"');
exit('\q');
exit('\1');
exit('');
exit('"');
}
