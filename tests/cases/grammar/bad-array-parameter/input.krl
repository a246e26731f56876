int f(int a[]) { }
