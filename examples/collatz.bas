// The longest Collatz chain for starting values below 1000.
best = 0: best_start = 0
for start = 1 to 999
  n = start: steps = 0
  while n <> 1
    if n % 2 = 0 then n = n / 2 else n = 3 * n + 1
    steps = steps + 1
  wend
  if steps > best then best = steps: best_start = start
next
print "longest chain starts at"; best_start; " with"; best; " steps"
