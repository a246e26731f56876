# For cmake-lint only: the files are laid out by hand.
line_width = 100
tab_size = 2
# Left out, with the reason:
#   C0103  lists of a folder are written like other variables, in small letters
#   C0111  a function's comment stands above it
#   C0113  a command says by itself what it makes
disabled_codes = ["C0103", "C0111", "C0113"]
