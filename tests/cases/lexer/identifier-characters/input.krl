void main() { int _ = 1; int __a_ = 2; int aZ09_z = 3; int Q = 4; print(_, __a_, aZ09_z, Q); }
