"""Counts the primes below 800,000, five times."""


def count_primes():
    limit = 800000
    composite = [False] * limit
    i = 0
    while i < limit:
        composite[i] = False
        i += 1
    count = 0
    number = 2
    while number < limit:
        if not composite[number]:
            count += 1
            multiple = number + number
            while multiple < limit:
                composite[multiple] = True
                multiple += number
        number += 1
    return count


def main():
    for _ in range(5):
        print(count_primes())


main()
