// Text art, as somebody writes it who knows JavaScript.
string repeat(string text, int count) {
    let result = "";
    for (let i = 0; i < count; i++) {
        result += text;
    }
    return result;
}

string pad(int value, int width) {
    let digits = 1;
    let rest = value;
    while (rest >= 10) {
        rest /= 10;
        digits++;
    }
    return repeat(" ", width - digits) + value;
}

void box(string text, int length) {
    const line = "+" + repeat("-", length + 2) + "+";
    console.log(line);
    console.log("| " + text + " |");
    console.log(line);
}

void table(int rows) {
    for (let i = 1; i <= rows; i++) {
        let line = "";
        for (let j = 1; j <= rows; j++) {
            line += pad(i * j, 4);
        }
        console.log(line);
    }
}

void main() {
    box("hello", 5);
    table(4);

    const days = 3;
    let names[3] = {"one", "two", "three"};
    for (let name of names) {
        console.log("day", name);
    }
    let total = 0;
    let step = 1;
    do {
        total += step;
        step *= 2;
    } while (total < 100);
    console.log("total", total, "step", step);

    var even = total % 2 === 0;
    if (even !== true) console.log("odd - as it should be");
    let word = days > 2 ? "many" : days === 2 ? "two" : "few";
    console.log(word + " days");
    let stars = "";
    let size = 5;
    while (size --> 0) {
        stars += size % 2 == 0 ? "*" : " ";
    }
    console.log("[" + stars + "]");
    let c = 'x';
    let letters = "";
    for (let i = 0; i < 3; i++) letters += c;
    console.log(letters);
}
