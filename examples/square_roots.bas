// Square roots of 2, 3 and 10 to 2,000 digits, and a check: the root of 2
// squared must give 2 back to within the last digits.
float 2000
dim r$(9), s$(9)
for n = 2 to 10
  if n = 2 or n = 3 or n = 10 then gosub 100
next
end
100 long r$, sqr, n
print "sqr("; n; ") ="
for i = 0 to 8
  if len(r$(i)) > 0 then print r$(i)
next
long s$, mult, r$, r$
print "squared again: "; left$(s$(0), 30); "..."
return
