// LONG declares LONGMATH variables and arrays; LONG alone makes new numeric names LONGMATH.
long a, b, c(3), m(2, 2)
a = 1
b = a / 3
c(2) = 2
m(1, 1) = c(2) * 10
print b
print c(2), m(1, 1), c(0)
x = 1 / 3
print x
long
y = 1 / 3
print y
dim d(1)
d(0) = 1 / 3
print d(0)
// strings stay strings
s$ = "text"
print s$
long off
z = 1 / 3
print z
if 0 then long never, never2(5)
never = 1 / 3
print never
if 1 then long else long off
w = 1 / 3
print w
