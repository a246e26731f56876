void main() {
    print('\\', "n");
    print("\\", 'n');
    string s = "\\";
    string t = s + "n";
    print(t);
    print(t + t);
    string u = t + "\n";
    print(u);
}
