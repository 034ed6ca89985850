// Floating-point arithmetic in a FOR loop: 1,000,000 rounds.
s = 0
for i = 1 to 1000000
  s = s + i * 0.5 - i / 4
next
hi = int(s / 1000000)
print "arith"; hi; s - hi * 1000000
