while 1
print "x"
