#{
a }# void main() { print("1"); } #{
}#
