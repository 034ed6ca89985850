print "a"
for i = 1 to 3
print i
