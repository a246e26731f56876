int f(int, int b) { }
