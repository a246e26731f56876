# Names: each function is one scope, whatever blocks there are.
int twice(int value) {                    #@ loc(twice, "twice"); loc(twiceValue, "value"); symbol("twice", "function"); symbol("value", "variable", "twice")
    return value + value;                 #@ loc(first, "value"); loc(wide, "value + value"); select("val|ue +", first, wide)
}                                         #@ hover("|}")

int value(int other) {                    #@ loc(valueFunction, "value"); symbol("value", "function")
    return other;
}

void main() {                             #@ symbol("main", "function"); not_renamed("ma|in", "start", "cannot be renamed")
    int value = 1;                        #@ loc(value, "value"); symbol("value", "variable", "main")
    int table[3] = {1, 2, 3};             #@ loc(table, "table"); symbol("table", "array", "main")
    if (value > 0) {                      #@ loc(read, "value")
        int inner = twice(value);         #@ loc(inner, "inner"); loc(call, "twice"); loc(argument, "value")
        value += inner;                   #@ loc(write, "value"); loc(added, "inner")
    }
    print("größe 😀: ", inner, "\n");     #@ loc(outside, "inner"); diagnostic("inner", "early-use", "hint"); hover("inn|er", "int inner", "A variable of `main`.")
    table[value] = value;                 #@ loc(element, "table"); loc(index, "value"); loc(last, "= value")
    value++;                              #@ loc(step, "value")
    print("😀", twice(value), value(table[0]), "\n");
    #@ loc(second, "twice"); loc(printed, "value"); loc(valueCall, "value(")
    #@ definition("tw|ice", twice); references("tw|ice", twice, call, second)
    #@ hover("twi|ce", "int twice(int value)"); hover("prin|t", "void print(value, ...)", "Writes its arguments")
    #@ definition("|value)", value); definition("value|(", valueFunction)
}
#@ definition("}|")
