#! 5:5 -9223372036854775808 / -1 does not fit into an int
int i = 2147483647;
i = i * i * 2 + i * 4 + 1;
i = 0 - i - 1;
int minus = -1;
i = i / minus;
#! fine
int i = 2147483647;
i = i * i * 2 + i * 4 + 1;
i = 0 - i;
int minus = -1;
print(i / minus, (i - 1) / 1);
