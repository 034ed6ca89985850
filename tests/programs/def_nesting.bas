// The deepest chain of calls allowed is 199; one more is refused.
def down(n)
  if n = 0 then return 0
  return 1 + down(n - 1)
def end
def loop1(n) = loop1(n + 1)
print down(198)
print "next: 200 calls"
print down(199)
