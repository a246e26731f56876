#{ one
two
three }# @
# four
@
void main() { }
