rem messagebox prints the message and waits for a line; the answer is the button
print messagebox("Disk is full", "Warning")
print messagebox("Save changes?", "Editor", "yesno", "question")
print messagebox("Retry?", "Copy", "yesnocancel")
print messagebox("Go on?", "Run", "okcancel", "none")
print messagebox("Last one")
k$ = inkey$ + inkey$ : print "keys: "; asc(k$); asc(mid$(k$, 2))
