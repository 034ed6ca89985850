// e to 5,000 digits, printed piece by piece.
float 5000
dim e$(20)
long e$, longe
for i = 0 to 19
  if len(e$(i)) > 0 then print e$(i)
next
