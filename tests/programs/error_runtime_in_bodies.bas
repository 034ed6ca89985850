// errors inside loop and subroutine bodies show the offending line and caret
gosub 100
end
100 while 1
110	for i = 1 to 2
120		x = i /	(i - 2)
130	next
140 wend
150 return
