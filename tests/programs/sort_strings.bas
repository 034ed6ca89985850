rem String keys ignore letter case unless "case" is given
dim s$(5)
s$(0) = "pear" : s$(1) = "Apple" : s$(2) = "banana" : s$(3) = "apple" : s$(4) = "Cherry"
sort s$
for i = 0 to 4 : print s$(i); " "; : next : print
sort s$, case
for i = 0 to 4 : print s$(i); " "; : next : print
sort s$, descending
for i = 0 to 4 : print s$(i); " "; : next : print
rem a sub-array: the fixed index selects the page of a 3-dimensional array
dim p$(2, 3, 2)
for i = 0 to 2 : p$(0, i, 0) = chr$(67 - i) : p$(0, i, 1) = str$(i, "%.0f") : p$(1, i, 0) = chr$(90 - i) : next
sort p$(1)
sort p$(0), keycol1 = 0
for i = 0 to 2 : print p$(0, i, 0); p$(0, i, 1); " "; p$(1, i, 0); " "; : next : print
rem empty strings sort first
dim e$(3) : e$(0) = "b" : e$(2) = "a"
sort e$
print "["; e$(0); "]["; e$(1); "]["; e$(2); "]"
rem passed over: nothing is sorted and the array need not exist yet
if 0 then sort nothing, keycol1 = 9
sort s$, count = 0
for i = 0 to 4 : print s$(i); " "; : next : print
