int f(a) { }
