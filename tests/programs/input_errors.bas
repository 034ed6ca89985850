// Wrong entries are answered and asked again; statement errors stop.
input "Two numbers"; a, b
print "sum"; a + b
input "Text"; t$
print t$
