rem A write that fails says why on a line of its own, before the message,
rem whether a statement or the end of a command line wrote it; the session goes on
open "o", 1, "/dev/full"
print #1, "left open";
