// Prints the prime numbers below 100 with a sieve.
n = 100
dim composite(100)
for i = 2 to n - 1
  if composite(i) = 0 then print i;: for j = i * i to n - 1 step i: composite(j) = 1: next
next
print
