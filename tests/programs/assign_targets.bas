// Assignment targets: variables, elements of every type, and a whole array,
// which takes no value (checked when the statement runs, not when passed over).
dim q(3), w$(3), k(3, 2)
x = 1: s$ = "abc": q(1) = 5: w$(2) = s$ + "d": k(2, 1) = q(1) * 2
for i = 0 to 2: q(i) = q(i) + i: next
print x; s$; q(0); q(1); q(2); w$(2); k(2, 1)
if x > 5 then q = 7
for i = 1 to 3
  if i = 3 then q = i
  print i; q(1)
next
print "not reached"
