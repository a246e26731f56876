void main() {
    int a = 1;
    {
        int b = 2;
        {
        }
        {
            int c = 3;
        }
    }
}
