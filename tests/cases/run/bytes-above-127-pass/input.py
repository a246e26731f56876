import sys
sys.stdout.buffer.write(b'void main() {\n    print("\xe9\xff\x80", \'\xe9\');\n}\n')
