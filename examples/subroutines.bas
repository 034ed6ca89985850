// GOSUB/RETURN and ON GOSUB: a tiny menu driven by a counter.
10 for choice = 1 to 3
20   on choice gosub 100, 200, 300
30 next
40 end
100 print "one: squares";: for i = 1 to 5: print i * i;: next: print: return
200 print "two: a word backwards ";: w$ = "stressed": gosub 400: print r$: return
300 print "three: done": return
400 r$ = "": for i = len(w$) to 1 step -1: r$ = r$ + mid$(w$, i, 1): next: return
