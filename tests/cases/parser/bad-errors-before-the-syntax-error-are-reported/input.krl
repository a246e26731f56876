print(1);
void main() {
@
x;
(1)++;
$ ]
