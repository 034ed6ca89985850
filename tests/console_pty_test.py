#!/usr/bin/env python3
"""Console mode in a pseudo-terminal: line editing, Ctrl+C and stepping.

usage: console_pty_test.py TESSALINE
"""
import os
import pty
import re
import select
import signal
import shutil
import sys
import tempfile
import time

EXE = sys.argv[1]


class Session:
    def __init__(self, args, cwd, env):
        self.pid, self.fd = pty.fork()
        if self.pid == 0:
            os.chdir(cwd)
            os.execve(EXE, [EXE] + args, env)
        self.seen = b""
        self.seen_all = b""

    def expect(self, text, timeout=10.0):
        """Waits until `text` appears in the output after what was matched before."""
        want = text.encode()
        end = time.time() + timeout
        while want not in self.seen:
            left = end - time.time()
            if left <= 0:
                raise AssertionError("timed out waiting for %r; output so far:\n%s" % (text, self.seen.decode(errors="replace")))
            ready, _, _ = select.select([self.fd], [], [], left)
            if ready:
                try:
                    chunk = os.read(self.fd, 4096)
                except OSError:
                    chunk = b""
                if not chunk:
                    raise AssertionError("program ended while waiting for %r:\n%s" % (text, self.seen.decode(errors="replace")))
                self.seen += chunk
                self.seen_all += chunk
        self.seen = self.seen[self.seen.index(want) + len(want):]

    def send(self, data):
        os.write(self.fd, data.encode() if isinstance(data, str) else data)

    def wait(self, timeout=10.0):
        end = time.time() + timeout
        while time.time() < end:
            pid, status = os.waitpid(self.pid, os.WNOHANG)
            if pid:
                return os.waitstatus_to_exitcode(status)
            try:
                ready, _, _ = select.select([self.fd], [], [], 0.1)
                if ready:
                    os.read(self.fd, 4096)
            except OSError:
                pass
        raise AssertionError("program did not end")

    def wait_closed(self, timeout=10.0):
        end = time.time() + timeout
        while time.time() < end:
            pid, status = os.waitpid(self.pid, os.WNOHANG)
            if pid:
                return os.waitstatus_to_exitcode(status)
            time.sleep(0.05)
        raise AssertionError("program did not end")


def main():
    home = tempfile.mkdtemp()
    try:
        run(home)
    finally:
        shutil.rmtree(home, ignore_errors=True)
    print("console pty test passed")


def run(home):
    env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home + "/config", XDG_STATE_HOME=home + "/state",
               TERM="dumb", LC_ALL="C")
    # Relative names are found in the working folder, Documents/Tessaline.
    work = os.path.join(home, "Documents", "Tessaline")
    os.makedirs(work)
    with open(os.path.join(work, "steps.bas"), "w") as f:
        f.write("a = 1\nstop\na = 2\nprint \"a is\"; a\n")
    with open(os.path.join(work, "loop.bas"), "w") as f:
        f.write("for v = 1 to 2\nstop\nprint \"v=\";v\nnext\n")

    s = Session(["/c"], home, env)
    s.expect("Command: ")
    # Line editing: "prnt 5", back to the start of the line, two right, insert "i".
    s.send("prnt 5\x01\x1b[C\x1b[Ci\r")
    s.expect("5\r\n")
    s.expect("Command: ")
    # Ctrl+C at the prompt does not end the interpreter.
    s.send("\x03")
    s.send("print 8\r")
    s.expect("8\r\n")
    s.expect("Command: ")
    # Ctrl+C during a long loop stops the program at the next statement.
    s.send("for i = 1 to 1e9: next\r")
    time.sleep(0.5)
    s.send("\x03")
    s.expect("User interrupted program")
    s.expect("Command: ")
    s.send("print i > 1\r")
    s.expect("1\r\n")
    # Stepping: STOP waits; an empty line runs one statement, a typed command
    # runs at once, CONT continues.
    s.send('run "steps.bas"\r')
    s.expect("Next statement is:")
    s.expect("Stepping...(click STEP or CONTINUE)")
    s.expect("Stepping -- Command: ")
    s.send("\r")
    s.expect("Stepping -- Command: ")
    s.send("print a * 10\r")
    s.expect("20")
    s.expect("Stepping -- Command: ")
    s.send("cont\r")
    s.expect("a is            2")
    s.expect("Command: ")
    # History: the up arrow brings back the last command line.
    s.send("\x1b[A\r")
    s.expect("Stepping -- Command: ")
    s.send("cont\r")
    s.expect("a is            2")
    s.expect("Command: ")
    # Paused inside a FOR body: a typed line and CONT run outside the loop.
    s.send('run "loop.bas"\r')
    s.expect("Stepping -- Command: ")
    s.send("print v * 100\r")
    s.expect("100\r\n")
    s.expect("Stepping -- Command: ")
    s.send("cont\r")
    s.expect("v=            1")
    s.expect("Stepping -- Command: ")
    s.send("cont\r")
    s.expect("v=            2")
    s.expect("Command: ")
    assert b"without" not in s.seen_all, s.seen_all.decode(errors="replace")
    s.send("\r")
    s.expect("Press <enter> to terminate program.")
    s.send("\r")
    code = s.wait()
    assert code == 0, "exit status %d" % code
    assert os.path.exists(home + "/state/tessaline/history"), "no history file"
    signals_save_the_session(env, home)


def signals_save_the_session(env, home):
    """SIGHUP (the terminal closed), SIGTERM and SIGQUIT, at the prompt or
    while a program runs, save the history and the settings as a normal exit
    does, then end the process by that signal."""
    history = home + "/state/tessaline/history"
    conf = home + "/config/Ostraval Software/Tessaline.conf"
    cases = [("hangup", signal.SIGHUP, False), ("term", signal.SIGTERM, False),
             ("quit", signal.SIGQUIT, False), ("busy", signal.SIGTERM, True), ("busyhup", signal.SIGHUP, True)]
    for name, sig, busy in cases:
        s = Session(["/c"], home, env)
        s.expect("Command: ")
        command = "print \"%s\"; 6 * 7" % name
        s.send(command + "\r")
        s.expect("42")
        s.expect("Command: ")
        if busy:
            s.send("for i = 1 to 1e9: next\r")
            time.sleep(0.3)
        if sig == signal.SIGHUP:
            os.close(s.fd)  # the terminal goes away: the kernel sends SIGHUP
            code = s.wait_closed()
        else:
            os.kill(s.pid, sig)
            code = s.wait()
            os.close(s.fd)
        assert code == -sig, "%s: exit status %d" % (name, code)
        with open(history, "rb") as f:
            # (the line editor's file encodes blanks)
            assert b'"%s";' % name.encode() in f.read(), "%s: history not saved" % name
        with open(conf, "rb") as f:
            text = f.read()
        assert re.search(rb'RecentCommand%d="?print \\"%s\\"; 6 \* 7' % (1 if busy else 0, name.encode()), text), \
            "%s: settings not saved:\n%s" % (name, text.decode(errors="replace"))


if __name__ == "__main__":
    main()
