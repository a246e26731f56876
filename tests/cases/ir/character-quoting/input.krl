void main() {
    character a = '\'';
    character b = '\\';
    character c = '\n';
    character d = '\r';
    character e = '\t';
    character f = 'x';
    character g = ' ';
    character h = '\q';
}
