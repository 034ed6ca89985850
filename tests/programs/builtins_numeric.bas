rem Rounding, exponents, remainders, factorials, roots and logarithms
print cint(2.5); cint(-2.5); cint(2.4999); cint(-0.5); fix(-2.7); int(-2.7); fix(2.7); int(2.7)
print exponent(1234); exponent(0.00123); exponent(-5); exponent(0); exponent(9.999e99)
print mod(7, 3); mod(-7, 3); mod(7, -3); mod(7.5, 2)
print factorial(1); factorial(5); factorial(170.9); factorial(20)
print setcolor(255, 0, 0); setcolor(0, 255, 0); setcolor(0, 0, 255); setcolor(1.9, 2, 3)
print root(27, 3); root(-8, 3); root(16, 4); half(7); half(-3)
print log(1); log10(1000); exp10(3); exp(0); sqr(2) * sqr(2)
print abs(-3); sgn(-0.1); sgn(0)
rem The angle unit
print checkdegrees; sin(0); cos(0); atn(0); acot(0) * 2 - pi
degrees
print checkdegrees; sin(90); cos(90); sin(-90); cos(180); sin(30.5) = sin(390.5)
print tan(45); cot(45); atn(1); acot(1); acot(-1); sin(450)
x = sin(30) : print cossame; cos(30) = cossame
radians
print checkdegrees; atn(1) * 4 - pi; cossame = cos(30)
print tan(pi / 4) - 1 < 1e-15; cot(pi / 4) - 1 < 1e-15
