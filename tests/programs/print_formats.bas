// PRINT zones, separators, TAB, USING, engineering and picture formats, WRITE
print 1, 2, 3
print 1; 2; 3
print "a", "b"; "c"
print "one";
print " line"
print tab(20); "x"
print "ab"; tab(10); "cd"; tab(5); "ef"
x = 1234.5678
print using "%10.2f"; x
print using "max"; 1 / 3
print using "eng V"; 0.0047
print using "engOhm"; 4700000
print using "eng"; 1e20
print using "#####.##"; x
print using "+####"; 42
print using "##"; 12345
printtabs = 8: print 1, 2
printtabs = 0: print 1, 2
printtabs = 80: print 1, 2
printformat$$ = "%6.2f": print 3.14159, 2 / 3
printformat$$ = ""
write "a", 2, "quote\"back\\slash"
write 1 / 3, -2.5
print (1 + 2) * 3
print
print "end"
