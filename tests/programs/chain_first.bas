a = 42: b$ = "kept"
print "first program"
chain "chain_second.txt", "keepdata"
print "not reached"
