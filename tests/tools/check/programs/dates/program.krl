# Days of the week, moon and calendar.
bool isLeap(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int daysIn(int month, int year) {
    switch (month) {
        case 2:
            return isLeap(year) ? 29 : 28;
        case 4:
        case 6:
        case 9:
        case 11:
            return 30;
        default:
            return 31;
    }
}

int dayOfYear(int day, int month, int year) {
    int days = day;
    for (int m = 1; m < month; m++) days += daysIn(m, year);
    return days;
}

# 0 is Sunday.
int weekday(int day, int month, int year) {
    int t[12] = {0, 3, 2, 5, 0, 3, 5, 1, 4, 6, 2, 4};
    if (month < 3) year -= 1;
    return (year + year / 4 - year / 100 + year / 400 + t[month - 1] + day) % 7;
}

string name(int weekday) {
    string names[7] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    return names[weekday];
}

void main() {
    print("2000 leap: ", isLeap(2000), ", 1900 leap: ", isLeap(1900), "\n");
    print(dayOfYear(1, 3, 2024), " ", dayOfYear(31, 12, 2023), "\n");
    print(name(weekday(1, 1, 2000)), " ", name(weekday(22, 11, 2026)), "\n");

    # Friday the 13th
    int fridays = 0;
    for (int month = 1; month <= 12; month++) {
        if (weekday(13, month, 2026) == 5) {
            fridays++;
            print("Friday the 13th in month ", month, "\n");
        }
    }
    print(fridays, " of them\n");

    # a page of a calendar
    int first = weekday(1, 2, 2026);
    int days = daysIn(2, 2026);
    int column = 0;
    while (column < first) {
        print("   ");
        column++;
    }
    for (int day = 1; day <= days; day++) {
        if (day < 10) print(" ");
        print(day, (first + day) % 7 == 0 || day == days ? "\n" : " ");
    }
    int seconds = dayOfYear(10, 1, 2026) * 24 * 60 * 60;
    print(seconds, " seconds\n");
}
