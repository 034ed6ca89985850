// FLOAT and INTEGER switch the long-number mode; floatingptlength follows the length.
print floatingptlength
float 20.9
print floatingptlength, long(2) / long(3)
float 11
print long(2) / long(3)
float 1000000
print floatingptlength
float 30
integer
// integer mode drops fractions; a dropped 5 or more keeps one rounding digit
print long(7) / long(2), long("123.4"), long("123.99")
float
print floatingptlength, long(7) / long(2)
// a FLOAT or INTEGER in an untaken branch changes nothing
if 0 then float 12 else print "else"
print floatingptlength
if 1 then integer else float
print long(7) / long(2)
if 0 then integer else float
print long(7) / long(2)
integer
