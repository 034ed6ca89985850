// LONG r$, operation, operands: the result's text goes to a string, or to a
// string array in pieces of 255 characters; string results feed back as operands.
integer
long r$, convert, "1e254"
print len(r$), left$(r$, 3), right$(r$, 3)
dim a$(4)
a$(2) = "old"
long a$, convert, "1e255"
print len(a$(0)), len(a$(1)), len(a$(2)), len(a$(3)), a$(1)
dim b$(2)
long b$, convert, "-1e507"
print len(b$(0)), len(b$(1)), left$(b$(0), 3)
dim e$(2)
long e$(1), convert, 12345
print e$(1)
// 100 digits squared, squared again and again: arrays in and out
x$ = "1234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890"
long p$, mult, x$, x$
print len(p$); left$(p$, 12)
dim q$(2), s$(4)
long q$, mult, p$, p$
long s$, mult, q$, q$
print len(q$(0)) + len(q$(1)), len(s$(0)) + len(s$(1)) + len(s$(2)) + len(s$(3))
print left$(s$(0), 20); "..."; right$(s$(3), 20)
dim v$(2)
long v$, div, s$, q$
print v$(0) = q$(0), v$(1) = q$(1)
long d$, mod, s$, "1000000007"
print d$
long d$, div, "1000000000000000000000000000001", 7, m$
print d$; " rem "; m$
float
long f$, div, 1, 7
print f$
long f$, mult, "1.5", 4
print f$
long f$, convert, long(2) / long(3)
print f$
long f$, mod, 10, 3
print f$
// passed over: no error in integer mode, nothing stored
integer
if 0 then long f$, sqr, 2
print f$
