// GOSUB/RETURN, nesting, RETURN with a value, ON GOTO and ON GOSUB
10 gosub 1000
20 print "back"
30 for i = 0 to 3
40   on i gosub 2000, 2100, 2200
50 next
60 x = 2.7: on x goto 200, 300
70 print "not reached"
200 print "not this one": end
300 print "ON 2.7 went to 300"
310 on 3 goto 200, 300
320 print "ON beyond the list goes on"
330 gosub 3000
340 print "end of main": end
1000 print "in 1000": gosub 1100: print "back in 1000": return
1100 print "in 1100": return
2000 print "first": return
2100 print "second": return
2200 print "third": return
3000 for k = 1 to 2: gosub 3100: next: return
3100 print "sub in a loop"; k: return
