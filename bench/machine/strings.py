"""Builds lines of words and numbers, and a text that grows."""

import sys


def pad(number):
    text = str(number)
    limit = 10
    while limit < 100000:
        if number < limit:
            text = "0" + text
        limit = limit * 10
    return text


def main():
    lines = 0
    page = ""
    i = 0
    while i < 200000:
        line = "line " + pad(i) + ": "
        line = line + "value " + pad(i * 7 - i // 3) + "\n"
        page = page + "x"
        lines += 1
        if lines == 1000:
            sys.stdout.write(line + page + "\n")
            page = ""
            lines = 0
        i += 1


main()
