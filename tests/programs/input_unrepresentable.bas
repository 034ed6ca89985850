// A value that cannot be stored as typed is asked for again, however long.
long b
input "Double"; a
print a
input "Long"; b
print b
input "Text"; t$
print len(t$)
line input "Line: "; l$
print len(l$)
print "still running"
read x
data 1e999
