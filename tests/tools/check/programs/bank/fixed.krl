#* The interest of a year, in cents.
int interest(int balance, double rate) {
    double hundred = (double) 100;
    double balanceDouble = (double) balance;
    return whole(balanceDouble * rate / hundred);
}

boolean isRich(int balance) {
    if (balance > 100000) {
        return true;
    }
    return false;
}

string grade(int balance) {
    if (balance >= 100000) { return "gold"; } elseif (balance >= 10000) { return "silver"; }
    return "basic";
}

void printAmount(int cents) {
    int value = cents / 100;
    string valueText = (string) value;
    print(valueText + ".");
    if (cents - cents / 100 * 100 < 10) { print("0"); }
    print(cents - cents / 100 * 100);
}

void main() {
    int ACCOUNTS = 4;
    int balances[4] = {120050, 9999, 50000, 7};
    string owners[4] = {"Ada", "Bob", "Cleo", "Dan"};
    double rate = 2.5;

    for (int i = 0; i < ACCOUNTS; i++) {
        print(owners[i] + ": ");
        printAmount(balances[i]);
        print(" (" + grade(balances[i]) + ")", "\n");
    }

    # one year later
    int sum = 0;
    for (i = 0; i < ACCOUNTS; ++i) {
        int gain = interest(balances[i], rate);
        balances[i] += gain;
        sum += gain;
    }
    string sumText = (string) sum;
    print("interest: " + sumText, "\n");

    int rich = 0, poor = 0;
    for (int balanceIndex = 0; balanceIndex < 4; balanceIndex++) {
        int balance = balances[balanceIndex];
        boolean isRichResult = isRich(balance);
        if (isRichResult) {
            rich++;
        } else {
            poor++;
        }
    }
    string richText = (string) rich;
    string poorText = (string) poor;
    print("rich: " + richText + ", poor: " + poorText, "\n");

    int best = 0;
    for (i = 1; i < ACCOUNTS; i++) {
        if (balances[i] > balances[best]) { best = i; }
    }
    print("richest: " + owners[best], "\n");
    boolean equal = false;
    if (balances[0] == balances[1]) { equal = true; }
    string chosen = "";
    if (equal) { chosen = "equal"; } else { chosen = "different"; }
    print(chosen, "\n");
}

# The double without what is behind its point, between -2^62 and 2^62.
int whole(double value) {
    double zero = (double) 0;
    double rest = value;
    if (value < zero) {
        rest = zero - value;
    }
    int step = 1;
    double size = (double) step;
    while (size <= rest) {
        size = size + size;
        step = step + step;
    }
    int result = 0;
    while (step > 0) {
        if (size <= rest) {
            rest = rest - size;
            result = result + step;
        }
        size = size * 0.5;
        step = step / 2;
    }
    if (value < zero) {
        result = 0 - result;
    }
    return result;
}
