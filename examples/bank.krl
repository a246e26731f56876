# A small bank: moves money between accounts, refuses what is not covered, prints the balances.
# Money is counted in cents, in whole numbers.

# Pads the number with zeros to two digits.
string twoDigits(int number) {
    string text = (string) number;
    if (number < 10) {
        return "0" + text;
    }
    return text;
}

# The amount in the form 1234.05, right-aligned in ten places.
string money(int cents) {
    int whole = cents / 100;
    string text = (string) whole;
    text = text + "." + twoDigits(cents - whole * 100);
    for (int limit = 10; limit <= 1000000; limit = limit * 10) {
        if (whole < limit) {
            text = " " + text;
        }
    }
    return text;
}

void main() {
    int accounts = 4;
    string owner[accounts] = {"Ada", "Ben", "Cleo", "Dan"};
    int balance[accounts] = {120000, 5050, 999, 0};

    int transfers = 6;
    int from[transfers] = {0, 1, 2, 0, 3, 1};
    int to[transfers] = {1, 2, 3, 3, 0, 0};
    int amount[transfers] = {25075, 10000, 1000, 94925, 12345, 20126};

    int account = 0;
    int before = 0;
    for (account = 0; account < accounts; account++) {
        before += balance[account];
    }

    for (int i = 0; i < transfers; i++) {
        int payer = from[i];    # an index cannot hold another index
        int payee = to[i];
        if (balance[payer] < amount[i]) {
            print("refused:", money(amount[i]), " from ", owner[payer], ", who has only",
                  money(balance[payer]), "\n");
            continue;
        }
        balance[payer] -= amount[i];
        balance[payee] += amount[i];
        print("paid:   ", money(amount[i]), " from ", owner[payer], " to ", owner[payee], "\n");
    }

    int after = 0;
    for (account = 0; account < accounts; account++) {
        print(money(balance[account]), "  ", owner[account], "\n");
        after += balance[account];
    }
    print(money(after), "  in all\n");
    if (after != before) {
        print("the books do not balance\n");
        exit();
    }
    print("the books balance\n");
}
