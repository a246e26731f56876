#! 2:5 `d` holds a double, and is used as a condition
double d = 0.5;
if (d) { print("x"); }
#! fine
double d = 0.5;
if (d > 0.25) { print("x"); }
#! 2:5 `d` holds a double, and is used as a condition
double d = 0.5;
if (!d) { print("x"); }
#! 3:5 `n` holds an int, and is used as a double
double d = 0.5;
int n = 1;
if (d < n) { print("x"); }
#! 2:5 `s` holds a string, and is used as an int
string s = "5";
if (s > 4) { print("x"); }
#! fine
string s = "5";
if (s == "5") { print("x"); }
#! 2:1 `s` holds a string, and is used as an int
string s = "text";
s -= 1;
#! 2:1 `s` holds a string, and is used as an int
string s = "text";
s++;
#! 3:1 `i` holds an int, and is used as a double
int i = 1;
i = i;
i += 1.5;
#! 2:7 `yes` holds an int, and is used as a double
double yes = 0.5 < 1.5;
print(yes);
#! 2:7 `d` holds an int, and is used as a double
double d = 2.0 * 3.0;
print(d);
#! fine
double d = 2.5 * 3.5;
print(d);
#! 2:1 `same` holds an int, and is used as a string
string same = "a" == "b";
print(same);
#! fine
character c = 'a';
int code = (int) c;
boolean b = true;
if (b && code == 97) { print(c); }
#! 3:7 an element of `a` holds a double, and is used as an int
int a[2] = {1, 0.5};
int i = 1;
print(a[i]);
#! 2:15 the result of `two` is used, but a value of another type was returned
double two() { return 2.0; }
void main() { double d = two(); print(d); }
