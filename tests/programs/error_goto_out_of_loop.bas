10 for i = 1 to 2
20   if i = 2 then goto 50
30   print i
40 next
50 print "out"
