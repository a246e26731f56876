void main() {
    print("quote \" backslash \\ feed \n return \r tab \t é");
}
