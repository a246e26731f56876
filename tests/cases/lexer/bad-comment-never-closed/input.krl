void main() { #{ opened here
@ int x = 1;
}
