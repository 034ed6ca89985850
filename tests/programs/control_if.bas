// IF/THEN/ELSE on one line, ELSE chains, IF ... GOTO, string conditions
x = 3
if x = 3 then print "three" else print "not three"
if x = 4 then print "four" else print "not four"
if 0 then print 1 else print 2
if "" then print "empty is true" else print "empty is false"
if "a" then print "text is true"
if x > 1 then if x > 2 then print "both" else print "inner else"
if x > 5 then print "big" else if x > 2 then print "middle" else print "small"
if x = 3 goto 100
print "not reached"
100 print "jumped"
if x = 3 then y = 1: z = 2 else y = 9
print y; z
if x <> 3 then y = 5: print "skipped" else print "else part"; y
i = 7: dim a(5): if i < 5 then print a(i)
print "valid when run"
if x = 0 then print 1 / x
print "no division error"
