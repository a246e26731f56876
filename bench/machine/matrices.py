"""Multiplies matrices of 100 rows and columns, four times."""


def main():
    size = 100
    left = [0.0] * 10000
    right = [0.0] * 10000
    product = [0.0] * 10000
    value = 0.5
    step = 0.001
    at = 0
    while at < 10000:
        left[at] = value
        right[at] = 1.5 - value
        value = value + step
        at += 1
    for turn in range(4):
        row = 0
        while row < size:
            column = 0
            while column < size:
                total = 0.0
                i = row * size
                j = column
                end = i + size
                while i < end:
                    total = total + left[i] * right[j]
                    i += 1
                    j += size
                place = row * size + column
                product[place] = total
                column += 1
            row += 1
        print(product[0], product[5050], product[9999])
        left[turn] = product[turn]


main()
