// Many series: a family of curves, each its own colour and weight.
graph width = 7, height = 4.5
text string = "x ^ n for n = 1 .. 6", v = 95, size = 14
dim r(7), g(7), b(7)
for n = 1 to 6
  read r(n), g(n), b(n)
next n
data 31, 119, 180, 255, 127, 14, 44, 160, 44, 214, 39, 40, 148, 103, 189, 140, 86, 75
for n = 1 to 6
  plot color = (r(n), g(n), b(n)), lineweight = 1 + n / 3
  for i = 0 to 100
    plot x = i / 100, y = (i / 100) ^ n
  next i
next n
