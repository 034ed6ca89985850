rem RANDOM files: FIELD, LSET/RSET, PUT and GET by record number
open "parts.dat" for random as #1 len = 20
field #1, 4 AS code$, 12 AS part$, 4 AS qty$
for i = 1 to 3
  read c$, p$, q
  lset code$ = c$
  lset part$ = p$
  rset qty$ = str$(q, "%.0f")
  put #1, i
next i
data A1, bolt, 120, B22, washer, 7, C333, hinge with a long name, 4512
rem record 5 leaves record 4 as a gap; the next PUT without a number is 6
lset code$ = "Z9" : lset part$ = "last" : rset qty$ = "1"
put #1, 5
put #1
print "bytes:"; filesize(1)
for i = 6 to 1 step -1
  get #1, i
  print i; "["; code$; "]["; part$; "]["; qty$; "]"; val(qty$)
next i
rem GET without a number reads the record after the last one
get #1, 1 : get #1
print "after 1: "; part$
close #1
rem PRINT # builds a record without FIELD; PUT writes it padded with blanks
open "r", 2, "lines.dat", 10
print #2, "abc"; 12
put #2, 1
print #2, "0123456789"
put #2
get #2, 1
close
open "lines.dat" for input as 3
line input #3, a$
print "["; a$; "]"; len(a$)
close 3
