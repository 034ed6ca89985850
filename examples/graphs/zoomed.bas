// A chosen window on the data: fixed scales and offsets instead of the
// automatic view (the user can still zoom with the wheel and drag).
graph width = 7, height = 4.5
text string = "sin(x)/x near its first zero", v = 95, size = 14
plot color = (23, 190, 207), lineweight = 2.5
for i = 1 to 2000
  x = i / 100
  plot x = x, y = sin(x) / x
next i
// 0.5 data units per inch across from x = 2, 0.1 per inch up from y = -0.25.
graph hscale = 0.5, hoffset = -2, vscale = 0.1, voffset = 0.25
