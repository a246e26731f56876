void main() { int ab = 1; int Ab = 2; int aB = 3; print(ab, Ab, aB); }
