// Graph settings in batch mode: the graph window is made, never shown.
graph width = 6, height = 4, nogrid, noborder, bgcolor = (255, 250, 240)
graph hscale = 2, vscale = 0.5, hoffset = -1, voffset = 1.5, hmargin = 0.75, axisweight = 2, clearance = 0.2
for i = 1 to 10
  plot x = i, y = log(i)
next i
text string = "Logarithms", size = 14, boxed
graph listparms
print "points:"; i - 1
// Changed settings come back as given; LISTPARMS with other settings only lists.
graph noaxes, grid, border, includexaxis = 0, numberyaxis = 0, landscape
graph listparms, nogrid
graph end
print "ended"
// Automatic scales and offsets list what the layout calculated for the data
// as they are now. Without numbers along the axes and with given margins the
// plotting area leaves the same room on every screen.
graph width = 5, height = 4, numberxaxis = 0, numberyaxis = 0, hmargin = 0.5, vmargin = 0.5, clearance = 0
for i = 0 to 4
  plot x = i, y = 10 * i
next i
graph listparms
plot x = 8, y = -10
graph listparms
graph end
graph listparms
