#include <stdio.h>
#define N 3

void fill(int m[9], int start) {
    for (int i = 0; i < N; i++) {
        for (int j = 0; j < N; j++) {
            m[i * N + j] = start + i * N + j;
        }
    }
}

void multiply(int a[], int b[], int result[]) {
    for (int i = 0; i < N; i++) {
        for (int j = 0; j < N; j++) {
            int sum = 0;
            for (int k = 0; k < N; k++) {
                sum += a[i * N + k] * b[k * N + j];
            }
            result[i * N + j] = sum;
        }
    }
}

int trace(int m[]) {
    int sum = 0;
    for (int i = 0; i < N; i++)
        sum += m[i * N + i];
    return sum;
}

void show(int m[]) {
    for (int i = 0; i < N; i++) {
        for (int j = 0; j < N; j++) {
            printf("%d", m[i * N + j]);
            printf(j < N - 1 ? " " : "\n");
        }
    }
}

int main() {
    int a[9], b[9], c[9];
    fill(a, 1);
    fill(b, 10);
    multiply(a, b, c);
    show(c);
    printf("trace: %d\n", trace(c));

    /* transpose */
    for (int i = 0; i < N; i++) {
        for (int j = i + 1; j < N; j++) {
            int t = c[i * N + j];
            c[i * N + j] = c[j * N + i];
            c[j * N + i] = t;
        }
    }
    printf("transposed:\n");
    show(c);

    int grid[2][3] = {{1, 2, 3}, {4, 5, 6}};
    int total = 0;
    for (int i = 0; i < 2; i++)
        for (int j = 0; j < 3; j++)
            total += grid[i][j] * (i == j ? 10 : 1);
    printf("total: %d\n", total);
    return 0;
}
