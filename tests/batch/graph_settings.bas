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
graph listparms
