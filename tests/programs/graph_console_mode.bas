// The graph needs the window: Console mode refuses GRAPH.
print "before"
graph width = 5
print "after"
