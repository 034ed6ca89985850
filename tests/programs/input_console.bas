// INPUT and LINE INPUT read from standard input here.
input "Your name"; n$
input "Width, height: ", w, h
print n$; " has an area of"; w * h
dim t(3)
input t(0), t(1), t(2)
print t(0) + t(1) + t(2)
input "Quoted"; q$, r$
print "["; q$; "] ["; r$; "]"
line input "Whole line: "; l$
print "["; l$; "]"
line input l2$
print "["; l2$; "]"
input "Empty entries"; e1, e2$
print e1; "["; e2$; "]"
input "Last"; z
print "never printed"
