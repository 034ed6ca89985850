rem rnd draws three times from the C standard's sample generator
a = rnd(-5) : b = rnd(1)
print a; b; rnd(0); rnd(0) = b
randomize 5
print rnd(1) = a; rnd(7) = b
c = rnd(-5.9) : print c = a
randomize -5 : print rnd(1) = a
randomize 4294967295 : x = rnd(1) : print x >= 0 and x < 1
randomize timer : x = rnd(1) : print x >= 0 and x < 1
randomize "TIMER" : x = rnd(1) : print x >= 0 and x < 1
rem passed over: no draw, no reseed, no error
randomize 7 : d = rnd(1)
randomize 7
if 0 then randomize 0 : x = rnd(-0.5)
print rnd(1) = d
if 0 then x = rnd(1)
randomize 7 : print rnd(1) = d
