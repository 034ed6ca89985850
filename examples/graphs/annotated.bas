// Text of every kind: placed by percent and by data, boxed, rotated,
// justified, and stretched between two data points.
graph width = 7, height = 4.5, nogrid
text string = "Annotations", v = 95, size = 16, font = "DejaVu Serif"
text normal
plot color = (90, 90, 90), lineweight = 1.5
for i = 0 to 100
  plot x = i / 10, y = (i / 10) ^ 2 / 10
next i
text string = "left", x = 1, y = 8, justify = left, color = (0, 0, 200)
text string = "right", x = 9, y = 2, justify = right, color = (0, 0, 200)
degrees
text string = "rising", x = 7, y = 6, angle = 35, italic, color = (200, 0, 0)
text string = "boxed", x = 2.5, y = 4, boxed, bold, size = 14
text string = "stretched", x = 5, x2 = 9.5, y = 8.5, y2 = 9.5, color = (0, 120, 0)
