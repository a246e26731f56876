// A calculator for expressions in reverse Polish notation.
enum Kind { NUMBER, PLUS, MINUS, TIMES, DIVIDE, POWER };

int stack[20];
int top = 0;

void push(int value) {
    stack[top++] = value;
}

int pop() {
    top--;
    return stack[top];
}

int power(int base, int exponent) {
    int result = 1;
    while (exponent > 0) {
        if (exponent & 1) result *= base;
        base *= base;
        exponent >>= 1;
    }
    return result;
}

void apply(Kind kind) {
    int right = pop();
    int left = pop();
    switch (kind) {
        case PLUS:
            push(left + right);
            break;
        case MINUS:
            push(left - right);
            break;
        case TIMES:
            push(left * right);
            break;
        case DIVIDE:
            if (right == 0) {
                printf("division by zero\n");
                push(0);
            } else {
                push(left / right);
            }
            break;
        default:
            push(power(left, right));
    }
}

int main() {
    // 3 4 + 2 *
    push(3);
    push(4);
    apply(PLUS);
    push(2);
    apply(TIMES);
    printf("(3 + 4) * 2 = %d\n", pop());

    int kinds[7] = {NUMBER, NUMBER, POWER, NUMBER, MINUS, NUMBER, DIVIDE};
    int values[7] = {2, 10, 0, 24, 0, 8, 0};
    for (int i = 0; i < 7; i++) {
        if (kinds[i] == NUMBER) push(values[i]);
        else apply(kinds[i]);
    }
    printf("(2^10 - 24) / 8 = %d\n", pop());

    push(1);
    push(0);
    apply(DIVIDE);
    printf("left on the stack: %d\n", top);
    return 0;
}
