#! 2:1 index 3 is outside of `a`, whose indexes are 0 to 2
int a[3] = {1, 2, 3};
a[3] = 1;
#! fine
int a[3] = {1, 2, 3};
a[2] = 1;
print(a[0], a[2]);
#! 3:7 index 3 is outside of `a`, whose indexes are 0 to 2
int a[3] = {1, 2, 3};
int i = 3;
print(a[i]);
#! 3:1 index -1 is outside of `a`, whose indexes are 0 to 2
int a[3] = {1, 2, 3};
int i = -1;
a[i] = 4;
#! 3:1 index 1 is outside of `a`, whose only index is 0
int a[1] = {1};
int i = 1;
a[i]++;
#! 4:1 index 9223372036854775807 is outside of `a`, whose indexes are 0 to 1
int a[2] = {1, 2};
int half = 2147483647;
half = half * half * 2 + half * 4 + 1;
a[half] = 0;
#! 1:1 the list is longer than `a`, which has 2 elements
int a[2] = {1, 2, 3};
#! 1:1 the list is longer than `a`, which has 1 element
string a[1] = {"x", "y"};
#! fine
int a[3] = {1, 2};
print(a[1]);
#! 4:11 index 5 is outside of `d`, whose indexes are 0 to 4
double d[5] = {0.5, 0.5, 0.5, 0.5, 0.5};
double sum = 0.25;
for (int i = 0; i <= 5; i++) {
    sum = sum + d[i];
}
#! fine
int size = 4;
boolean seen[size];
size = 100;
for (int i = 0; i < 4; i++) { seen[i] = true; }
print(seen[2]);
