void main() { int x = 2; if (x == 1) { print("1"); } elseif (x == 2) { print("2"); } else { print("3"); } }
