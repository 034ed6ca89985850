print "startup ok"
