#{
}
}}# still comment
}# void main() { print("1"); }
