// Runaway recursion ends the program with a message instead of a crash.
10 n = n + 1: gosub 10
