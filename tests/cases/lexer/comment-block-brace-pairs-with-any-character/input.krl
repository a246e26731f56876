#{
 } }# void main() { #{
 }a}# print("1"); #{
}
}# }
