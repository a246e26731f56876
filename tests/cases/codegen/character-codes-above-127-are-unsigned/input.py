import sys
sys.stdout.buffer.write(b"void main() {\n    character c = '\xe9';\n}\n")
