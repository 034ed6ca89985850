// String building and slicing: 100,000 rounds of mid$, len, instr, chr$ and asc.
s$ = ""
c = 0
for i = 1 to 100000
  k = i - int(i / 26) * 26
  s$ = s$ + chr$(65 + k)
  if len(s$) > 200 then s$ = mid$(s$, 101)
  c = c + asc(mid$(s$, int(len(s$) / 2) + 1, 1)) + instr(s$, "XYZ")
next
hi = int(c / 1000000)
print "strings"; len(s$); hi; c - hi * 1000000
