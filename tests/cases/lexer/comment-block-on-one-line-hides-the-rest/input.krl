void main() { #{ a }# int x = 1; }
print("2");
}
