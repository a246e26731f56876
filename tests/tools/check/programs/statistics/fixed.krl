# Sorting and counting, in the manner of C++.
#include <vector>

void main() {
    double two = (double) 2;
    int data[10] = {7, 3, 9, 3, 1, 8, 3, 7, 5, 2};
    int few[5] = {40, 10, 30, 50, 20};
    int n = 10;
    {
        for (int i2 = 0; i2 < n - 1; i2++) {
            int least = i2;
            for (int j = i2 + 1; j < n; j++) {
                if (data[j] < data[least]) { least = j; }
            }
            if (least != i2) {
                {
                    int t = data[i2];
                    data[i2] = data[least];
                    data[least] = t;
                }
            }
        }
    }
    int n2 = 5;
    {
        for (int i3 = 0; i3 < n2 - 1; i3++) {
            int least2 = i3;
            for (int j2 = i3 + 1; j2 < n2; j2++) {
                if (few[j2] < few[least2]) { least2 = j2; }
            }
            if (least2 != i3) {
                {
                    int t2 = few[i3];
                    few[i3] = few[least2];
                    few[least2] = t2;
                }
            }
        }
    }
    int n3 = 10;
    {
        for (int i4 = 0; i4 < n3; i4++) {
            string chosen = "";
            if (i4 + 1 < n3) { chosen = " "; } else { chosen = "\n"; }
            print(data[i4], chosen);
        }
    }
    int n4 = 5;
    {
        for (int i5 = 0; i5 < n4; i5++) {
            string chosen2 = "";
            if (i5 + 1 < n4) { chosen2 = " "; } else { chosen2 = "\n"; }
            print(few[i5], chosen2);
        }
    }
    int n5 = 10;
    double medianResult = (double) 0;
    while (true) {
        if (n5 - n5 / 2 * 2 == 1) {
            int aIndex = n5 / 2;
            int aValue = data[aIndex];
            double aDouble = (double) aValue;
            medianResult = aDouble;
            break;
        }
        int aIndex2 = n5 / 2 - 1;
        int aIndex3 = n5 / 2;
        int value2 = data[aIndex2] + data[aIndex3];
        double valueDouble = (double) value2;
        medianResult = (valueDouble) / two;
        break;
    }
    int n6 = 5;
    double medianResult2 = (double) 0;
    while (true) {
        if (n6 - n6 / 2 * 2 == 1) {
            int aIndex4 = n6 / 2;
            int aValue2 = few[aIndex4];
            double aDouble2 = (double) aValue2;
            medianResult2 = aDouble2;
            break;
        }
        int aIndex5 = n6 / 2 - 1;
        int aIndex6 = n6 / 2;
        int value3 = few[aIndex5] + few[aIndex6];
        double valueDouble2 = (double) value3;
        medianResult2 = (valueDouble2) / two;
        break;
    }
    print("median ", medianResult, " and ", medianResult2, "\n");
    int n7 = 10;
    int modeResult = 0;
    {
        int best = data[0], most = 0;
        for (int i6 = 0; i6 < n7; i6++) {
            int count = 0;
            for (int j3 = 0; j3 < n7; j3++) {
                if (data[j3] == data[i6]) { count++; }
            }
            if (count > most) {
                most = count;
                best = data[i6];
            }
        }
        modeResult = best;
    }
    print("mode ", modeResult, "\n");
    int n8 = 5;
    int wanted = 30;
    int findResult = 0;
    boolean findDone = false;
    while (true) {
        int low = 0, high = n8 - 1;
        while (low <= high) {
            int middle = low + (high - low) / 2;
            if (few[middle] == wanted) {
                findResult = middle;
                findDone = true;
                break;
            }
            if (few[middle] < wanted) { low = middle + 1; } else { high = middle - 1; }
        }
        if (findDone) { break; }
        findResult = -1;
        break;
    }
    int n9 = 10;
    int wanted2 = 7;
    int findResult2 = 0;
    boolean findDone2 = false;
    while (true) {
        int low2 = 0, high2 = n9 - 1;
        while (low2 <= high2) {
            int middle2 = low2 + (high2 - low2) / 2;
            if (data[middle2] == wanted2) {
                findResult2 = middle2;
                findDone2 = true;
                break;
            }
            if (data[middle2] < wanted2) { low2 = middle2 + 1; } else { high2 = middle2 - 1; }
        }
        if (findDone2) { break; }
        findResult2 = -1;
        break;
    }
    print("30 at ", findResult, ", 7 at ", findResult2, "\n");
    int n10 = 10;
    int wanted3 = 4;
    int findResult3 = 0;
    boolean findDone3 = false;
    while (true) {
        int low3 = 0, high3 = n10 - 1;
        while (low3 <= high3) {
            int middle3 = low3 + (high3 - low3) / 2;
            if (data[middle3] == wanted3) {
                findResult3 = middle3;
                findDone3 = true;
                break;
            }
            if (data[middle3] < wanted3) { low3 = middle3 + 1; } else { high3 = middle3 - 1; }
        }
        if (findDone3) { break; }
        findResult3 = -1;
        break;
    }
    if (findResult3 == -1) { print("no 4", "\n"); }
    int histogram[10];
    for (int histogramIndex = 0; histogramIndex < 10; histogramIndex++) { histogram[histogramIndex] = 0; }
    for (int i = 0; i < 10; i++) {
        int histogramIndex2 = data[i];
        histogram[histogramIndex2]++;
    }
    for (int value = 0; value < 10; value++) {
        if (histogram[value] > 1) { print(value, ": ", histogram[value], "\n"); }
    }
    return;
}
