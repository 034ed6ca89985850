// WHILE/WEND with BREAK, CONTINUE and nesting
n = 0
while n < 5
  n = n + 1
  if n = 2 then continue
  if n = 4 then break
  print "n ="; n
wend
print "left with n ="; n
a = 0
while a < 2
  a = a + 1: b = 0
  while b < 2: b = b + 1: print a * 10 + b;: wend
wend
print
s$ = "xxx"
while s$ <> "": s$ = left$(s$, len(s$) - 1): print "["; s$; "]";: wend
print
while 0
  print "never"
wend
print "done"
