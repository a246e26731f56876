int f(int a,) { }
