// A low-pass filter's response on log axes: gain against frequency.
graph width = 7, height = 4.5, hscaletype = log, vscaletype = log
text string = "Low-pass filter, corner at 1 kHz", v = 95, size = 14
text string = "frequency (Hz)", xaxis
text string = "gain", yaxis
plot color = (148, 103, 189), lineweight = 2
for i = 0 to 120
  f = 10 ^ (1 + i / 30)
  plot x = f, y = 1 / sqr(1 + (f / 1000) ^ 2)
next i
text string = "corner", x = 1000, y = 0.5, boxed, size = 10
