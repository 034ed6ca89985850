// A multiplication table with a picture format and TAB.
for row = 1 to 9
  for col = 1 to 9
    print using "####"; row * col;
  next
  print
next
print tab(10); "done"
