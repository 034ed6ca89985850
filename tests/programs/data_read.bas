// READ takes the DATA items in order, across DATA lines and statements.
dim v(3), w$(2)
read a, b$, c$
print a; "|"; b$; "|"; c$; "|"
read v(0), v(1): read v(2), w$(1)
print v(0); v(1); v(2); "|"; w$(1); "|"
read n1, n2, e$, n3
print n1; n2; "["; e$; "]"; n3
restore 200
read x$, y
print x$; y
restore
read a
print "again from the start:"; a
restore 300
read s$, t$
print s$; "|"; t$
10 data 1.5, "two, quoted", three words
data -4, 5e2 : data .25, "\"esc\"\n"
20 data 0.5,,  , 7
200 data "two hundred", 200
300 data 12, 34 // a number read into a string keeps its text
print "done"
end
250 print "no data on this line"
900 data "quoted is not a number"
910 data "not closed
920 data "one" "two"
930 data "fine"
