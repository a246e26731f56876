"""Runs of line ends that are longer than the scanner's first buffer."""
print("\n" * 20000 + "@")
print("#{" + "\n" * 20000 + "}#")
print("@ void main() { }")
