#include <stdio.h>
#define N 3

void main() {
    int a[9];
    int b[9];
    int c[9];
    int start = 1;
    {
        for (int i2 = 0; i2 < 3; i2++) {
            for (int j2 = 0; j2 < 3; j2++) {
                int mIndex = i2 * 3 + j2;
                a[mIndex] = start + i2 * 3 + j2;
            }
        }
    }
    int start2 = 10;
    {
        for (int i3 = 0; i3 < 3; i3++) {
            for (int j3 = 0; j3 < 3; j3++) {
                int mIndex2 = i3 * 3 + j3;
                b[mIndex2] = start2 + i3 * 3 + j3;
            }
        }
    }
    {
        for (int i4 = 0; i4 < 3; i4++) {
            for (int j4 = 0; j4 < 3; j4++) {
                int sum = 0;
                for (int k = 0; k < 3; k++) {
                    int aIndex = i4 * 3 + k;
                    int bIndex = k * 3 + j4;
                    sum += a[aIndex] * b[bIndex];
                }
                int resultIndex = i4 * 3 + j4;
                c[resultIndex] = sum;
            }
        }
    }
    {
        for (int i5 = 0; i5 < 3; i5++) {
            for (int j5 = 0; j5 < 3; j5++) {
                int mIndex3 = i5 * 3 + j5;
                print(c[mIndex3]);
                string chosen = "";
                if (j5 < 3 - 1) { chosen = " "; } else { chosen = "\n"; }
                print(chosen);
            }
        }
    }
    int traceResult = 0;
    {
        int sum2 = 0;
        for (int i6 = 0; i6 < 3; i6++) {
            int mIndex4 = i6 * 3 + i6;
            sum2 += c[mIndex4];
        }
        traceResult = sum2;
    }
    print("trace: ", traceResult, "\n");

    # transpose
    for (int i = 0; i < 3; i++) {
        for (int j = i + 1; j < 3; j++) {
            int cIndex = i * 3 + j;
            int t = c[cIndex];
            int cIndex2 = i * 3 + j;
            int cIndex3 = j * 3 + i;
            c[cIndex2] = c[cIndex3];
            int cIndex4 = j * 3 + i;
            c[cIndex4] = t;
        }
    }
    print("transposed:\n");
    {
        for (int i7 = 0; i7 < 3; i7++) {
            for (int j6 = 0; j6 < 3; j6++) {
                int mIndex5 = i7 * 3 + j6;
                print(c[mIndex5]);
                string chosen2 = "";
                if (j6 < 3 - 1) { chosen2 = " "; } else { chosen2 = "\n"; }
                print(chosen2);
            }
        }
    }

    int grid[6] = {1, 2, 3, 4, 5, 6};
    int total = 0;
    for (i = 0; i < 2; i++) {
        for (j = 0; j < 3; j++) {
            int gridIndex = i * 3 + j;
            int chosen3 = 0;
            if (i == j) { chosen3 = 10; } else { chosen3 = 1; }
            total += grid[gridIndex] * (chosen3);
        }
    }
    print("total: ", total, "\n");
    return;
}
