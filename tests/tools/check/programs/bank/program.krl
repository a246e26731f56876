import java.util.Scanner;

public class Bank {
    static final int ACCOUNTS = 4;

    /** The interest of a year, in cents. */
    static int interest(int balance, double rate) {
        return (int) (balance * rate / 100.0);
    }

    static boolean isRich(int balance) {
        return balance > 100000;
    }

    static String grade(int balance) {
        if (balance >= 100000) return "gold";
        else if (balance >= 10000) return "silver";
        return "basic";
    }

    static void printAmount(int cents) {
        System.out.print(cents / 100 + ".");
        if (cents % 100 < 10) System.out.print("0");
        System.out.print(cents % 100);
    }

    public static void main(String[] args) {
        int[] balances = {120050, 9999, 50000, 7};
        String[] owners = {"Ada", "Bob", "Cleo", "Dan"};
        double rate = 2.5;

        for (int i = 0; i < ACCOUNTS; i++) {
            System.out.print(owners[i] + ": ");
            printAmount(balances[i]);
            System.out.println(" (" + grade(balances[i]) + ")");
        }

        // one year later
        int sum = 0;
        for (int i = 0; i < ACCOUNTS; ++i) {
            int gain = interest(balances[i], rate);
            balances[i] += gain;
            sum += gain;
        }
        System.out.println("interest: " + sum);

        int rich = 0, poor = 0;
        for (int balance : balances) {
            if (isRich(balance)) {
                rich++;
            } else {
                poor++;
            }
        }
        System.out.println("rich: " + rich + ", poor: " + poor);

        int best = 0;
        for (int i = 1; i < ACCOUNTS; i++)
            if (balances[i] > balances[best]) best = i;
        System.out.println("richest: " + owners[best]);
        boolean equal = balances[0] == balances[1];
        System.out.println(equal ? "equal" : "different");
    }
}
