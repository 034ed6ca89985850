rem BINARY files: every byte value written with PUT and read back with read() and GET
open "b", 1, "all.bin"
for i = 0 to 255 : put #1, i : next i
print "size"; filesize(1); " at end:"; eof(1)
a$ = read(1, 0, 1)
bad = 0
for i = 0 to 255
  b = read(1)
  if b <> i then bad = bad + 1
next i
print "wrong bytes:"; bad; " then"; read(1); eof(1)
rem as strings: a zero byte ends the text in front of it
s$ = read(1, 255, 2)
print len(s$); asc(s$); asc(right$(s$, 1))
s$ = read(1, 10, 1)
print len(s$); read(1); len(read(1, 3)); read(1, 0, 256) = ""; read(1)
rem GET reads bytes into numbers
a$ = read(1, 0, 255)
get #1, x, y, z
print x; y; z
close 1
rem PRINT # writes the bytes of its strings only; the file keeps its other bytes
open "b", 2, "text.bin"
print #2, "abc"; "def", "g"
a$ = read(2, 0, 3)
print #2, "C"
print filesize(2); read(2, 10, 1)
close
