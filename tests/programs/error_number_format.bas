print "ok"
12345678901 print "eleven digits"
