// Sieve of Eratosthenes below 200,000 in an array.
n = 200000
dim a(n + 1)
for i = 2 to 447
  lim = n
  if a(i) <> 0 then lim = 0
  for j = i * i to lim step i
    a(j) = 1
  next
next
c = 0
s = 0
for i = 2 to n - 1
  if a(i) = 0 then c = c + 1: s = s + i
next
hi = int(s / 1000000)
print "sieve"; c; hi; s - hi * 1000000
