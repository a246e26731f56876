print("void main() {")
print('    string s = "' + "abcdefgh" * (10 * 1024 * 128) + '";')
print('    print("compiled\\n");')
print("}")
