// Collatz sequence lengths for 1..5000 with WHILE and IF/THEN/ELSE.
t = 0
m = 0
for n = 1 to 5000
  x = n
  c = 0
  while x <> 1
    if x - int(x / 2) * 2 = 0 then x = x / 2 else x = 3 * x + 1
    c = c + 1
  wend
  t = t + c
  if c > m then m = c
next
print "collatz"; t; m
