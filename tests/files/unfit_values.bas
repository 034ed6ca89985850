rem INPUT # never cuts or changes a value: what cannot be stored as written is an error
open "i", 1, "data.unfit"
input #1, big
print big
input #1, s$
