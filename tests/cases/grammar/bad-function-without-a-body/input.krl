int f();
