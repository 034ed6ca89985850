// Calls that fail at run time; the bad definitions are loaded from bad/.
def area(w, h) = w * h
def name$(a$) = a$
def setarg(a)
  a = 5
  return a
def end
def oops(d) = 10 / d
def deeper(d) = 1 + oops(d)
print area(2, 3); name$("ok")
def bad$(x)
  return x
def end
def num(x$)
  return x$
def end
