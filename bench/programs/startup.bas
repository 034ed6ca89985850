print "ready"
