print "typed commands follow"
