// FOR/NEXT: counting up and down, zero trips, same-line loops, nesting, BREAK
print "up:";
for i = 1 to 3: print i;: next
print
print "after the loop i ="; i
print "down:";
for i = 3 to 1 step -1
  print i;
next i
print
for i = 5 to 1
  print "never printed"
next
print "zero trips leave i at"; i
for i = 1 to 2: for j = 10 to 30 step 10: print i * j;: next: next
print
for i = 0 to 1 step 0.25: print i;: next
print
for i = 1 to 10
  if i = 4 then break
  print i;
next
print
print "break left i at"; i
for k = 1 to 3
  print "k"; k
  for m = 1 to 2: print " m"; m: next m
next k
