// Three weeks of hourly temperatures on a datetime axis.
settimezone "Europe/Berlin"
graph width = 7, height = 4, hscaletype = datetime, includexaxis = 0
text string = "Temperature, Berlin", v = 95, size = 14
text string = "degrees C", yaxis
t0 = makedatetime(2026, 11, 2)
plot color = (214, 39, 40), lineweight = 1.5
for h = 0 to 21 * 24
  plot x = t0 + h * 3600, y = 6 + 4 * sin((h - 9) / 24 * 6.2832) - h / 150 + 1.5 * sin(h / 37)
next h
