# Prints calendar months, weeks beginning on Monday.

int mod(int a, int b) {
    return a - a / b * b;
}

boolean isLeapYear(int year) {
    int in4 = mod(year, 4);
    int in100 = mod(year, 100);
    int in400 = mod(year, 400);
    if (in400 == 0 || in4 == 0 && in100 != 0) {
        return true;
    }
    return false;
}

int daysInMonth(int year, int month) {
    int days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    boolean leap = isLeapYear(year);
    if (month == 2 && leap) {
        return 29;
    }
    int index = month - 1;
    return days[index];
}

# Zeller's congruence, turned so that Monday is 0 and Sunday is 6.
int firstWeekday(int year, int month) {
    if (month < 3) {
        month += 12;
        year--;
    }
    int century = year / 100;
    int inCentury = mod(year, 100);
    int zeller = 1 + 13 * (month + 1) / 5 + inCentury + inCentury / 4 + century / 4 + 5 * century;
    return mod(zeller + 5, 7);
}

void printMonth(int year, int month) {
    string names[12] = {"January", "February", "March", "April", "May", "June", "July",
                        "August", "September", "October", "November", "December"};
    int index = month - 1;
    print(names[index], " ", year, "\n");
    print("Mo Tu We Th Fr Sa Su\n");

    int weekday = firstWeekday(year, month);
    int days = daysInMonth(year, month);
    string line = "";
    for (int blank = 0; blank < weekday; blank++) {
        line += "   ";
    }
    for (int day = 1; day <= days; day++) {
        string text = (string) day;
        if (day < 10) {
            line += " ";
        }
        line += text;
        weekday++;
        if (weekday == 7 || day == days) {
            print(line, "\n");
            line = "";
            weekday = 0;
        } else {
            line += " ";
        }
    }
}

void main() {
    printMonth(2024, 2);
    printMonth(2025, 12);
    printMonth(1900, 2);
    printMonth(2000, 2);
}
