rem Zero bytes in a text file read as blanks: no string can hold them, and
rem the rest of the line after one is kept
open "b", 1, "zeros.txt"
print #1, "ab" : put #1, 0 : print #1, "cd"; chr$(10); "x,y"
put #1, 0, 0 : print #1, "z"; chr$(10); "12"
put #1, 0 : print #1, "3"
close 1
open "i", 1, "zeros.txt"
line input #1, a$ : print "["; a$; "]"; len(a$)
input #1, b$, c$ : print "["; b$; "]["; c$; "]"
print "["; input(1, 4); "]"; read(1); eof(1)
close
