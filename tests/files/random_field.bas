rem Each FIELD error in a program of its own (FIELD cannot be typed at the prompt)
for i = 1 to 11
  read f$
  open "o", 1, "e" + str$(i, "%.0f") + ".bas"
  print #1, "open \"r\", 1, \"f.dat\", 300 : open \"o\", 2, \"f.txt\""
  print #1, f$
  close #1
next i
data "field #1, 4 xs a$", "field #1, 4as a$", "field #1, 4 as", "field #1, 4 as a"
data "field #3, 4 as a$", "field #2, 4 as a$", "field #1, 0 as a$", "field #1, 256 as a$"
data "field #1, 200 as a$, 200 as b$", "field #1 4 as a$", "field #1, -1 as a$"
rem 65 variables in three statements are one too many
open "o", 1, "e12.bas"
print #1, "open \"r\", 1, \"f.dat\", 300"
for s = 0 to 2
  print #1, "field #1";
  for v = 1 to 22 - (s = 2) * 1
    print #1, ", 1 as v"; str$(s * 22 + v, "%.0f"); "$";
  next v
  print #1,
next s
print #1, "print \"not reached\""
close
