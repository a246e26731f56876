int f(void) { }
