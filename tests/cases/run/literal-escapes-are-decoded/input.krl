void main() {
    print("feed \n return \r tab \t quote \" backslash \\ end");
}
