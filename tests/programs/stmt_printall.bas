// PRINTALL shows variables, arrays, memory use and the reserved variables.
x = 1.5: name$ = "Tess": dim grid(3, 4), words$(2)
printall "variables"
printall "ARRAYS"
printall "memory"
date$ = "01-02-2003": time$ = "04:05:06"
printall "reserved"
printall
