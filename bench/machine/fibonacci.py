"""The 32nd number of Fibonacci, by its definition."""


def fibonacci(n):
    if n < 2:
        return n
    return fibonacci(n - 1) + fibonacci(n - 2)


print(fibonacci(32))
