10 print 1
20 print 2
10 print 3
