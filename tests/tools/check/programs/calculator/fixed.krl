# A calculator for expressions in reverse Polish notation.

int power(int base, int exponent) {
    int result = 1;
    while (exponent > 0) {
        if (exponent - exponent / 2 * 2) { result = result * base; }
        base = base * base;
        exponent = exponent / 2;
    }
    return result;
}

void main() {
    int stack[20];
    for (int stackIndex = 0; stackIndex < 20; stackIndex++) { stack[stackIndex] = 0; }
    int top = 0;
    # 3 4 + 2 *
    int value = 3;
    {
        int before = top;
        top++;
        stack[before] = value;
    }
    int value2 = 4;
    {
        int before2 = top;
        top++;
        stack[before2] = value2;
    }
    int kind = 1;
    {
        int popResult = 0;
        {
            top--;
            popResult = stack[top];
        }
        int right = popResult;
        int popResult2 = 0;
        {
            top--;
            popResult2 = stack[top];
        }
        int left = popResult2;
        if (kind == 1) {
            int value3 = left + right;
            {
                int before3 = top;
                top++;
                stack[before3] = value3;
            }
        } elseif (kind == 2) {
            int value4 = left - right;
            {
                int before4 = top;
                top++;
                stack[before4] = value4;
            }
        } elseif (kind == 3) {
            int value5 = left * right;
            {
                int before5 = top;
                top++;
                stack[before5] = value5;
            }
        } elseif (kind == 4) {
            if (right == 0) {
                print("division by zero\n");
                int value6 = 0;
                {
                    int before6 = top;
                    top++;
                    stack[before6] = value6;
                }
            } else {
                int value7 = left / right;
                {
                    int before7 = top;
                    top++;
                    stack[before7] = value7;
                }
            }
        } else {
            int value8 = power(left, right);
            {
                int before8 = top;
                top++;
                stack[before8] = value8;
            }
        }
    }
    int value9 = 2;
    {
        int before9 = top;
        top++;
        stack[before9] = value9;
    }
    int kind2 = 3;
    {
        int popResult3 = 0;
        {
            top--;
            popResult3 = stack[top];
        }
        int right2 = popResult3;
        int popResult4 = 0;
        {
            top--;
            popResult4 = stack[top];
        }
        int left2 = popResult4;
        if (kind2 == 1) {
            int value10 = left2 + right2;
            {
                int before10 = top;
                top++;
                stack[before10] = value10;
            }
        } elseif (kind2 == 2) {
            int value11 = left2 - right2;
            {
                int before11 = top;
                top++;
                stack[before11] = value11;
            }
        } elseif (kind2 == 3) {
            int value12 = left2 * right2;
            {
                int before12 = top;
                top++;
                stack[before12] = value12;
            }
        } elseif (kind2 == 4) {
            if (right2 == 0) {
                print("division by zero\n");
                int value13 = 0;
                {
                    int before13 = top;
                    top++;
                    stack[before13] = value13;
                }
            } else {
                int value14 = left2 / right2;
                {
                    int before14 = top;
                    top++;
                    stack[before14] = value14;
                }
            }
        } else {
            int value15 = power(left2, right2);
            {
                int before15 = top;
                top++;
                stack[before15] = value15;
            }
        }
    }
    int popResult5 = 0;
    {
        top--;
        popResult5 = stack[top];
    }
    print("(3 + 4) * 2 = ", popResult5, "\n");

    int kinds[7] = {0, 0, 5, 0, 2, 0, 4};
    int values[7] = {2, 10, 0, 24, 0, 8, 0};
    for (int i = 0; i < 7; i++) {
        if (kinds[i] == 0) {
            int value16 = values[i];
            {
                int before16 = top;
                top++;
                stack[before16] = value16;
            }
        } else {
            int kind3 = kinds[i];
            {
                int popResult6 = 0;
                {
                    top--;
                    popResult6 = stack[top];
                }
                int right3 = popResult6;
                int popResult7 = 0;
                {
                    top--;
                    popResult7 = stack[top];
                }
                int left3 = popResult7;
                if (kind3 == 1) {
                    int value17 = left3 + right3;
                    {
                        int before17 = top;
                        top++;
                        stack[before17] = value17;
                    }
                } elseif (kind3 == 2) {
                    int value18 = left3 - right3;
                    {
                        int before18 = top;
                        top++;
                        stack[before18] = value18;
                    }
                } elseif (kind3 == 3) {
                    int value19 = left3 * right3;
                    {
                        int before19 = top;
                        top++;
                        stack[before19] = value19;
                    }
                } elseif (kind3 == 4) {
                    if (right3 == 0) {
                        print("division by zero\n");
                        int value20 = 0;
                        {
                            int before20 = top;
                            top++;
                            stack[before20] = value20;
                        }
                    } else {
                        int value21 = left3 / right3;
                        {
                            int before21 = top;
                            top++;
                            stack[before21] = value21;
                        }
                    }
                } else {
                    int value22 = power(left3, right3);
                    {
                        int before22 = top;
                        top++;
                        stack[before22] = value22;
                    }
                }
            }
        }
    }
    int popResult8 = 0;
    {
        top--;
        popResult8 = stack[top];
    }
    print("(2^10 - 24) / 8 = ", popResult8, "\n");

    int value23 = 1;
    {
        int before23 = top;
        top++;
        stack[before23] = value23;
    }
    int value24 = 0;
    {
        int before24 = top;
        top++;
        stack[before24] = value24;
    }
    int kind4 = 4;
    {
        int popResult9 = 0;
        {
            top--;
            popResult9 = stack[top];
        }
        int right4 = popResult9;
        int popResult10 = 0;
        {
            top--;
            popResult10 = stack[top];
        }
        int left4 = popResult10;
        if (kind4 == 1) {
            int value25 = left4 + right4;
            {
                int before25 = top;
                top++;
                stack[before25] = value25;
            }
        } elseif (kind4 == 2) {
            int value26 = left4 - right4;
            {
                int before26 = top;
                top++;
                stack[before26] = value26;
            }
        } elseif (kind4 == 3) {
            int value27 = left4 * right4;
            {
                int before27 = top;
                top++;
                stack[before27] = value27;
            }
        } elseif (kind4 == 4) {
            if (right4 == 0) {
                print("division by zero\n");
                int value28 = 0;
                {
                    int before28 = top;
                    top++;
                    stack[before28] = value28;
                }
            } else {
                int value29 = left4 / right4;
                {
                    int before29 = top;
                    top++;
                    stack[before29] = value29;
                }
            }
        } else {
            int value30 = power(left4, right4);
            {
                int before30 = top;
                top++;
                stack[before30] = value30;
            }
        }
    }
    print("left on the stack: ", top, "\n");
    return;
}
