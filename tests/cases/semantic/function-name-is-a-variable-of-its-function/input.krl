int answer() {
    answer = 42;
    return answer;
}

void main() {
    print(answer(), "\n");
}
