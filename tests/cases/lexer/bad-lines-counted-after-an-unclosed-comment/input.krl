#{ one

void main() { @
}
