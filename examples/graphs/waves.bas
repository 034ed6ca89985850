// Waves: three series on linear axes, with a title and axis labels.
graph width = 7, height = 4.5
text string = "Three waves", v = 95, size = 15
text string = "t (s)", xaxis
text string = "amplitude", yaxis
plot color = (31, 119, 180), lineweight = 2
for i = 0 to 400
  t = i / 40
  plot x = t, y = sin(t)
next i
plot color = (255, 127, 14), lineweight = 2
for i = 0 to 400
  t = i / 40
  plot x = t, y = 0.6 * cos(2 * t)
next i
plot color = (44, 160, 44), lineweight = 1.5
for i = 0 to 400
  t = i / 40
  plot x = t, y = exp(-t / 4) * sin(3 * t)
next i
