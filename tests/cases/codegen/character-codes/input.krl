void main() {
    character c = 'A';
    c = '\n';
    c = '\t';
    c = '\r';
    c = '\\';
    c = '\'';
    c = '0';
    c = ' ';
    c = '\b';
    c = '\f';
    c = '';
    c = '\0';
    c = '~';
}
