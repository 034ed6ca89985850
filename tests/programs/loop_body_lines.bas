// Loop bodies that start on the line after FOR or WHILE: blanks, a tab or a
// colon behind the header, a NEXT or WEND on a body line, nested loops.
s = 0
for i = 1 to 3   
  s = s + i
next
for i = 1 to 2:
  s = s + 10
next
for i = 1 to 2:	
  s = s + 100: next
for i = 1 to 2
  for j = 1 to 3 
    s = s + 1000
  next
next
w = 0
while w < 3   
  w = w + 1
wend
while w < 5:
w = w + 1: wend
for i = 1 to 0
  s = -1
next
print s; w; i
