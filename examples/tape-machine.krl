# An interpreter for a tiny machine: a tape of cells, a head, and eight commands.
#
#     > <   move the head right, left        + -   count the cell up, down
#     .     print the cell as a character    [ ]   repeat what is between while the cell is not 0
#
# Strings cannot be indexed, so the program is an array of characters.

void main() {
    int length = 70;
    character program[length] = {
        '+', '+', '+', '+', '+', '+', '+', '+', '[', '>', '+', '+', '+', '+', '+', '+', '+', '+',
        '+', '<', '-', ']', '>', '.', '<', '+', '+', '+', '+', '[', '>', '+', '+', '+', '+', '+',
        '+', '+', '+', '<', '-', ']', '>', '+', '.', '<', '+', '+', '+', '+', '+', '+', '+', '+',
        '[', '>', '-', '-', '-', '-', '-', '-', '-', '-', '-', '<', '-', ']', '>', '.'};
    int tape[8] = {0, 0, 0, 0, 0, 0, 0, 0};
    int head = 0;
    int steps = 0;

    int at = 0;
    while (at < length) {
        character command = program[at];
        if (command == '>') {
            head++;
        } elseif (command == '<') {
            head--;
        } elseif (command == '+') {
            tape[head]++;
        } elseif (command == '-') {
            tape[head]--;
        } elseif (command == '.') {
            int code = tape[head];
            character output = (character) code;
            print(output);
        } elseif (command == '[' && tape[head] == 0 || command == ']' && tape[head] != 0) {
            # Walk to the matching bracket; depth counts the brackets still open on the way.
            int direction = 1;
            if (command == ']') {
                direction = -1;
            }
            int depth = direction;
            while (depth != 0) {
                at += direction;
                if (program[at] == '[') {
                    depth++;
                } elseif (program[at] == ']') {
                    depth--;
                }
            }
        }
        steps++;
        at++;
    }
    print("\n", steps, " steps\n");
}
