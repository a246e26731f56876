# Programs that are being written: what is missing must not hide what is there.
#@ unmarked_diagnostics()
void report(string label, int count) {
    print(label, ": ", count, "\n");
}
double area(double width, double height) {
    return width * height;
}
int none() {
    return 0;
}
v                             #@ complete("v|", "void"); not_completed("v|", "print", "report")
void main() {
    int total = 0;
    for (int index = 0; index < 3; index++) {
        int inner = 0;
        in                    #@ complete("in|", "index", "inner", "int"); not_completed("in|", "total", "in")
    }
    # tot                     #@ not_completed("tot|", "total")
    print("tot");             #@ not_completed("tot|", "total")
    total = 12 + report       #@ not_completed("12|", "total"); complete("report|", "report")
    re                        #@ complete("re|", "report", "return"); not_completed("re|", "area", "main")
    report("a, b", no(1, 2),  #@ signature("report(|", "void report(string label, int count)", 0); no_signature("repo|rt(")
    area(1.5, none()          #@ signature("area(|", "double area(double width, double height)", 0); signature("1.5,|", "double area(double width, double height)", 1); signature("none(|", "int none()", 0); signature("none()|", "double area(double width, double height)", 1)
    ;                         #@ complete("|;", "area", "while", "total", "inner"); signature("|;", "double area(double width, double height)", 1); no_signature(";|"); not_completed("|;", "main", "elsewhere")
    area((1, 2;               #@ signature("2|", "double area(double width, double height)", 0)
    el                        #@ complete("el|", "else", "elseif")
    print(total               #@ signature("print(|", "void print(value, ...)", 0)
