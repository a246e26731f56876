int print() { }
