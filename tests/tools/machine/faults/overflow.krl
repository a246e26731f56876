#! 3:5 9223372036854775807 + 1 does not fit into an int
int i = 2147483647;
i = i * i * 2 + i * 4 + 1;
i = i + 1;
#! fine
int i = 2147483647;
i = i * i * 2 + i * 4 + 1;
print(i, " ", 0 - i - 1);
#! 4:5 -9223372036854775808 - 1 does not fit into an int
int i = 2147483647;
i = i * i * 2 + i * 4 + 1;
i = 0 - i - 1;
i = i - 1;
#! 2:5 4611686018427387904 * 2 does not fit into an int
int i = 65536 * 65536 * 1073741824;
i = i * 2;
#! 3:1 9223372036854775807 + 1 does not fit into an int
int i = 2147483647;
i = i * i * 2 + i * 4 + 1;
i++;
#! 4:1 -9223372036854775808 - 1 does not fit into an int
int i = 2147483647;
i = i * i * 2 + i * 4 + 1;
i = 0 - i - 1;
i--;
#! 4:5 -(-9223372036854775808) does not fit into an int
int i = 2147483647;
i = i * i * 2 + i * 4 + 1;
i = 0 - i - 1;
i = -i;
#! 3:1 9223372036854775807 + 9223372036854775807 does not fit into an int
int i = 2147483647;
i = i * i * 2 + i * 4 + 1;
i += i;
#! 1:1 the literal 2147483648 does not fit into 32 bits: -2147483648 is taken
int i = 2147483648;
#! fine
int i = 2147483647;
int j = -2147483647;
#! 2:5 the literal 4294967297 does not fit into 32 bits: 1 is taken
int i = 1;
i = i + 4294967297;
#! 1:7 the literal 99999999999999999999 does not fit into 32 bits: -1 is taken
print(99999999999999999999);
#! 2:1 the literal 4294967296 does not fit into 32 bits: 0 is taken
int a[1] = {5};
a[4294967296] = 1;
#! fine
boolean no = false;
if (no) { print(99999999999999999999); }
#! fine
double d = 99999999999.5;
print(d * d * d * d);
#! 2:15 the literal 3000000000 does not fit into 32 bits: -1294967296 is taken
void take(int n) { print(n); }
void main() { take(3000000000); }
