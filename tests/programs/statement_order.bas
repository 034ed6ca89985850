30 print "thirty": goto 10
10 print "ten": goto 20
20 print "twenty": end
