10 x = 1
while x < 3
20 data 1, 2, "three"
  x = x + 1
wend
30 data 4
