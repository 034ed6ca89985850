// FOR with a LONGMATH control variable: exact decimal steps
long k
for k = 0 to 1 step long("0.1")
  print k; " ";
next
print
print "after:"; k
for k = 12345678901234567890 to 12345678901234567892
  print k
next
