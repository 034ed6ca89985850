// SWAP, the MID$ statement, LSET/RSET, DEBUGPRINT, BEEP, CLS, COLOR, DELAY, HELP, SPAWN.
a = 1: b = 2: swap a, b: print a; b
a$ = "left": b$ = "right": swap a$, b$: print a$; " "; b$
dim q(2): q(1) = 9: swap a, q(1): print a; q(1)
s$ = "abcdefgh"
mid$(s$, 3) = "XY": print s$
mid$(s$, 1, 1) = "123": print s$
mid$(s$, 7, 5) = "PQRST": print s$
mid$(s$, 8, 0) = "Z": print s$
f$ = "12345"
lset f$ = "ab": print "["; f$; "]"
rset f$ = "cd": print "["; f$; "]"
rset f$ = "toolongvalue": print "["; f$; "]"
e$ = "": lset e$ = "abc": print "["; e$; "]"
?? a, s$, pi
debugprint q(1), e$
print "bell:";: beep: print "|"
color 14: color 7
delay 0.05
print "before cls";: cls: print "after cls"
help
spawn "true"
