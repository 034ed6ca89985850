// Runaway recursion ends the program with a message instead of a crash.
10 gosub 10
