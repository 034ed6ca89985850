def f(x)
  def g(y) = y
  return x
def end
