#! 2:7 7 is divided by zero
int zero = 0;
print(7 / zero);
#! 2:5 0 is divided by zero
int zero = 0;
if (zero / 0 == 1) { print("x"); }
#! 2:18 0 is divided by zero
int zero = 0;
if (zero != 0 && zero / zero == 1) { print("x"); }
#! fine
int zero = 0;
if (zero != 0) { print(1 / zero); }
print(zero / 7);
#! fine
double d = 0.5;
print(1.5 / (d - 0.5));
