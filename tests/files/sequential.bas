rem Sequential files: output, append, input, both OPEN forms, WRITE # read back by INPUT #
open "o", #1, "out.txt"
print #1, "alpha"; " beta"
print #1, 1, 2.5
print #1, "tail without line end";
close #1
open "out.txt" for append as #2
print #2, "appended"
close
open "i", 1, "out.txt"
while eof(1) = 0
  line input #1, a$
  print "["; a$; "]"
wend
close 1
rem WRITE # quotes strings; INPUT # reads them back, commas, quotes and backslashes too
open "quoted.txt" for output as 3
write #3, "a, b", "say \"hi\"", "back\\slash", -1.25, 7
write #3, "", 1e300
close #3
open "quoted.txt" for input as #3
input #3, a$, b$, c$, x, y
print a$; "|"; b$; "|"; c$; "|"; x; "|"; y
print "line used up:"; eof(3, "line"); " end:"; eof(3)
input #3, d$, z
print "["; d$; "]"; z; eof(3)
close #3
rem CR LF and LF line ends, a last line without an end, input() and read()
open "data.crlf" for input as #4
print "size"; filesize(4)
print "["; input(4, 5); "]"; read(4)
line input #4, r$
print "["; r$; "]"
input #4, p$, q$
print "["; p$; "]["; q$; "]"
print "line used up:"; eof(4, "line");
input #4, n
print n * 2; eof(4, "line")
line input #4, r$
print "["; r$; "]"; eof(4)
close #4
rem the function form returns the file number
print open("o", 5, "fn.txt")
print #5, "written through open()"
print filesize(5)
print #5, "a line left open at the end is written out when the program ends";
