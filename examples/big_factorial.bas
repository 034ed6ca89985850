// 1000! exactly in integer mode, and its number of digits.
integer
dim f$(12)
long f$, factorial, 1000
digits = 0
for i = 0 to 11
  digits = digits + len(f$(i))
  if len(f$(i)) > 0 then print f$(i)
next
print "1000! has"; digits; "digits"
