// Sorting and counting, in the manner of C++.
#include <vector>

void swap(int a[], int i, int j) {
    int t = a[i];
    a[i] = a[j];
    a[j] = t;
}

void sort(int a[], int n) {
    for (int i = 0; i < n - 1; i++) {
        int least = i;
        for (int j = i + 1; j < n; j++) {
            if (a[j] < a[least]) least = j;
        }
        if (least != i) swap(a, i, least);
    }
}

int find(int a[], int n, int wanted) {
    int low = 0, high = n - 1;
    while (low <= high) {
        int middle = low + (high - low) / 2;
        if (a[middle] == wanted) return middle;
        if (a[middle] < wanted) low = middle + 1;
        else high = middle - 1;
    }
    return -1;
}

int mode(int a[], int n) {
    int best = a[0], most = 0;
    for (int i = 0; i < n; i++) {
        int count = 0;
        for (int j = 0; j < n; j++) if (a[j] == a[i]) count++;
        if (count > most) {
            most = count;
            best = a[i];
        }
    }
    return best;
}

double median(int a[], int n) {
    if (n % 2 == 1) return a[n / 2];
    return (a[n / 2 - 1] + a[n / 2]) / 2.0;
}

void print_all(int a[], int n) {
    for (int i = 0; i < n; i++) std::cout << a[i] << (i + 1 < n ? " " : "\n");
}

int main() {
    int data[10] = {7, 3, 9, 3, 1, 8, 3, 7, 5, 2};
    int few[5] = {40, 10, 30, 50, 20};
    sort(data, 10);
    sort(few, 5);
    print_all(data, 10);
    print_all(few, 5);
    std::cout << "median " << median(data, 10) << " and " << median(few, 5) << std::endl;
    std::cout << "mode " << mode(data, 10) << std::endl;
    std::cout << "30 at " << find(few, 5, 30) << ", 7 at " << find(data, 10, 7) << std::endl;
    if (find(data, 10, 4) == -1) std::cout << "no 4" << std::endl;
    int histogram[10] = {};
    for (int i = 0; i < 10; i++) histogram[data[i]]++;
    for (int value = 0; value < 10; value++) {
        if (histogram[value] > 1) std::cout << value << ": " << histogram[value] << std::endl;
    }
    return 0;
}
