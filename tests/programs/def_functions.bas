// User-defined functions: one-line and multi-line bodies, strings, long numbers.
def sq(x) = x * x
def hyp(a, b) = sqr(sq(a) + sq(b))
def greet$(who$) = "Hello, " + who$ + "!"
def dice = 4
def halve(n) = n / 2 : print "DEF lines run nothing"
print sq(7), hyp(3, 4), dice, dice()
print greet$("World")
print halve(long("12345678901234567890123"))
// An argument hides the variable of the same name only inside the body.
x = 100
print sq(3), x

def fact(n)
  if n <= 1 then return 1
  return n * fact(n - 1)
def end
print "the body is passed over"
print fact(10), fact(1)

def rev$(s$)
  r$ = ""
  for i = len(s$) to 1 step -1
    r$ = r$ + mid$(s$, i, 1)
  next
  return r$
def end
print rev$("stressed")

// A long-number body: the value keeps all its digits.
def twice(n)
  return n + n
def end
print twice(long("99999999999999999999"))

// Running into DEF END gives 0, or "" for a string function.
def nothing(a)
  a2 = a
def end
def empty$(a$)
  b$ = a$
def end
print nothing(5); "["; empty$("x"); "]"

// Functions call each other and appear in any expression.
def fib(n)
  if n < 2 then return n
  return fib(n - 1) + fib(n - 2)
def end
for i = 1 to 10: print fib(i);: next: print
if sq(2) = 4 then print "sq(2) is 4"
print greet$(rev$("dlroW"))
