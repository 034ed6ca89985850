// hexconvert: numbers to hexadecimal text and back
print hexconvert(0), hexconvert(255), hexconvert(-2.5), hexconvert(0.1)
print hexconvert(18446744073709551615)
print hexconvert(long("123456789012345678901234567890"))
print hexconvert(long("0.5")), hexconvert(long("-0.0625")), hexconvert(long("0.1"))
print hexconvert("FF"), hexconvert(" -2.8 "), hexconvert("&hff"), hexconvert("0x10.1")
print hexconvert("FFFFFFFFFFFFFFFFFFFF")
print hexconvert(hexconvert(long("98765432109876543210987654321")))
x = hexconvert("FFFFFFFFFFFFF")
print x
// 10^307 has 255 hex digits; -10^307 needs 256 characters
h$ = hexconvert(long("1e307"))
print len(h$), left$(h$, 8)
dim a$(2)
a$(0) = "1"
a$(1) = "0000"
print hexconvert(a$)
