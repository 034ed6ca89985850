// Pi to 5,000 digits, kept in a string array and printed 50 digits a line.
float 5000
dim p$(20)
long p$, longpi
t$ = ""
for i = 0 to 19
  t$ = t$ + p$(i)
  while len(t$) >= 50
    print left$(t$, 50)
    t$ = mid$(t$, 51)
  wend
next
if len(t$) > 0 then print t$
