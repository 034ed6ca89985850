// 300,000 GOSUB/RETURN from a FOR loop.
s = 0
for i = 1 to 300000
  gosub 100
next
hi = int(s / 1000000)
print "gosub"; hi; s - hi * 1000000
end
100 s = s + i: return
