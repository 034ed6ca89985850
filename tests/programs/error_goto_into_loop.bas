10 goto 30
20 for i = 1 to 2
30   print i
40 next
