// APPEND and INCLUDE of files without a final line end
print "main program"
include "part_include.txt"
print "after the include"
append "part_append.txt"
