void main() {
exit('a');
exit('');
exit('\'');
exit('\\');
exit('"');
exit(' ');
exit('#');
}
