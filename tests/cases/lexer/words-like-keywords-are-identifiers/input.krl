void main() {
int char = 1; int bool = 2; int float = 3; int Int = 4; int elif = 5; int integer = 6; int format = 7;
int IF = 8; int printer = 9; int for_ = 1; int _if = 2; int if2 = 3; int xint = 4;
print(char, bool, float, Int, elif, integer, format, IF, printer, for_, _if, if2, xint);
}
