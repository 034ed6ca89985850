rem A 5x3 array sorted by column 1: equal keys keep their order, column 2 is
rem the tie-break column and comes back unchanged
dim a(5, 3)
for i = 0 to 4 : a(i, 0) = i : a(i, 1) = 5 - i % 3 : a(i, 2) = i * 10 : next
sort a, keycol1 = 1
gosub 1000
sort a, KEYCOL1 = 1, Descending
gosub 1000
rem keycol2 without keycol1: column 0 first, then column 2
for i = 0 to 4 : a(i, 0) = i % 2 : a(i, 2) = 10 - i : next
sort a, keycol2 = 2
gosub 1000
rem "count": only the first rows take part
for i = 0 to 4 : a(i, 0) = 5 - i : next
sort a, count = 3, unstable
gosub 1000
rem doubles that differ by less than 1 compare equal
dim n(4, 2)
n(0, 0) = 2.9 : n(1, 0) = 2.3 : n(2, 0) = 0.5 : n(3, 0) = 2.5
for i = 0 to 3 : n(i, 1) = i : next
sort n, keycol1 = 0
for i = 0 to 3 : print n(i, 0); n(i, 1) : next
rem two columns, both keys: the key is the tie-break column and sorts descending
dim t(4, 2)
for i = 0 to 3 : t(i, 0) = i : t(i, 1) = (i * 7) % 5 : next
sort t, keycol1 = 1
for i = 0 to 3 : print t(i, 0); t(i, 1) : next
sort t, keycol1 = 1, descending
for i = 0 to 3 : print t(i, 0); t(i, 1) : next
sort t, keycol1 = 1, unstable
for i = 0 to 3 : print t(i, 0); t(i, 1) : next
rem one dimension: descending unless "descending" is given
dim v(5)
v(0) = 3 : v(1) = 1 : v(2) = 4 : v(3) = 1.5 : v(4) = 5
sort v : print v(0); v(1); v(2); v(3); v(4)
sort v, descending : print v(0); v(1); v(2); v(3); v(4)
end
1000 for i = 0 to 4 : print a(i, 0); a(i, 1); a(i, 2) : next : print "--" : return
