// DEBUG options: each may be followed by OFF; "testroutine" shows their state.
debug testroutine
debug optmul, long off, lnrat, oldconvert, matherrok, timer mult
debug testroutine
debug timer div
debug timer mult, off
debug testroutine
debug off
debug testroutine
debug optmul off, lnrat off, oldconvert off, matherrok off
debug truncate
print long(2) / long(3)
debug round
print long(2) / long(3)
debug testdata, graph, zbox, mousecheckforward
// peekbcd publishes a number's internals into the peek variables
debug peekbcd long("-123456789.123456789")
print peekbcdlength, peekbcdsign, peekbcdexponent, peekbcdfirst8
// passed over: the syntax is checked, nothing changes
if 0 then debug optmul, timer sqr else print "else"
debug testroutine
