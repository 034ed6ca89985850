def f(x) = x
def F(y) = y + 1
