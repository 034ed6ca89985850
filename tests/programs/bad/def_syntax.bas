def f(x) x * 2
