# Repairs, one at a time: each leaves the other findings alone.
int answer() {
    return 42;
}

void main() {                       #@ unmarked_diagnostics()
    int start;                      #@ fix("start", "write `start = 0`", "    int start = 0;")
    double sum = 0.5;
    if (answer() == 42) {           #@ fix("answer()", "store the result first", "    int answerResult = answer();", "    if (answerResult == 42) {")
        start++;                    #@ no_fix("start")
    }
    if (start > 0) start = start % 3;  #@ fix("%", "write `start - start / 3 * 3`", "    if (start > 0) start = start - start / 3 * 3;")
    if (start > 1) start++;         #@ fix("start++;", "put braces around it", "    if (start > 1) { start++; }")
    int missing = nowhere;          #@ no_fix("nowhere")
    string s = "😀" + start; print(s);  #@ fix("start", "Repair", "    string startText = (string) start;", "    string s = \"😀\" + startText; print(s);")
    boolean big = start > 2;        #@ hint("2|", ": int"); fix("start > 2", "Repair", "    boolean big = false;", "    if (start > 2) { big = true; }")
}
