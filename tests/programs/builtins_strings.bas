rem hex$ in its four fill modes
print hex$(-1); "|"; hex$(255); "|"; hex$(255, 0); "|"; hex$(255, 1); "|"; hex$(65536, 1); "|"
print hex$(4294967295); "|"; hex$(-2147483648); "|"; hex$(1, 2); "|"; hex$(-2.5, 2); "|"; hex$(0, 1); "|"
print hex$(255.9); "|"; hex$(-1.5); "|"; hex$(1e300, 2)
rem str$ with the default format, "max" and explicit formats
print str$(3.5); "|"; str$(1 / 3, "max"); "|"; str$(1 / 3, "MAX"); "|"; str$(2, "%5.1f"); "|"
print str$(1234.5, "##,###.##"); "|"; str$(-0.5, "%g"); "|"
rem instr
print instr("abcabc", "c"); instr(4, "abcabc", "c"); instr(6, "abcabc", "c"); instr(0, "abc", "a")
print instr(4, "abc", "a"); instr("", "a"); instr("abc", "abcd"); instr(2, "abc", "bc"); instr(3, "abc", "bc")
print instr("aBc", "b"); instr("abc", ""); instr(2.9, "abcabc", "a"); instr("abc", "x")
rem string$, space$, chr$ and the substring functions
print string$(3, "xyz"); "|"; string$(2, 65); "|"; string$(0, "a"); "|"; space$(3); "|"; space$(0); "|"
print len(string$(255, "-")); len(space$(255)); asc(chr$(255)); len(chr$(0))
print left$("hello", 0); "|"; left$("hello", 2); "|"; right$("hello", 9); "|"; mid$("hello", 5); "|"; mid$("hello", 6); "|"; mid$("hello", 2, 0); "|"
rem letter case, val, asc
print tolower$("ABC def 1!"); "|"; toupper$("abc DEF 1!"); "|"; toupper$(""); "|"
print val("  42abc"); val("-1e3"); val(".5"); val("x1"); asc("Abc")
rem hexconvert both ways
print hexconvert("ff"); hexconvert("-10"); hexconvert(255); hexconvert(-4096.7); hexconvert(0)
print hexconvert("123456789ABCDEF0123")
print hexconvert(long("123456789012345678901234567890"))
rem str$ follows the default print format
defaultprintformat$$ = "%.2f"
print str$(2 / 3); "|"; str$(2 / 3, "%.3f"); "|"
