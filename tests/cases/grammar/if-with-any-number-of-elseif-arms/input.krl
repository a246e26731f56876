void main() {
int x = 3;
if (x == 1) { print("a"); }
elseif (x == 2) { print("b"); }
elseif (x == 3) { print("c"); }
elseif (x == 3) { print("d"); }
if (x == 1) { print("e"); } else { print("f"); }
}
