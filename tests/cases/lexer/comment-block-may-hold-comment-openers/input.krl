#{ # #{
#{ }# void main() { print("1"); }
