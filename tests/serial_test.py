#!/usr/bin/env python3
"""Serial ports against a pseudo-terminal pair made with socat.

usage: serial_test.py TESSALINE

The program opens one end of the pair as its port; this script plays the
instrument on the other end. Checked: PRINT # and read back with LINE INPUT #,
INPUT # and input(); the read time-out (321); a message longer than the record
length (319); a line longer than the record length (318); the baud rate,
parity and stop-bit checks (322-324); and the message for a port the user may
not open, which names the port's group (the program then runs as "nobody").
"""
import grp
import os
import pwd
import shutil
import subprocess
import sys
import tempfile
import threading
import time

EXE = sys.argv[1]
failures = []


def check(name, condition, detail=""):
    print(("ok   " if condition else "FAIL ") + name)
    if not condition:
        failures.append(name)
        if detail:
            print(detail)


class PtyPair:
    """Two linked pseudo-terminals: `port` for the program, `peer` for us."""

    def __init__(self, folder):
        self.port = os.path.join(folder, "port")
        self.peer = os.path.join(folder, "peer")
        self.proc = subprocess.Popen(
            ["socat", "pty,raw,echo=0,link=" + self.port, "pty,raw,echo=0,link=" + self.peer],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        for _ in range(500):
            if os.path.exists(self.port) and os.path.exists(self.peer):
                break
            time.sleep(0.01)
        else:
            raise RuntimeError("socat made no pty pair")
        self.fd = os.open(self.peer, os.O_RDWR | os.O_NOCTTY)

    def read_line(self, timeout=5.0):
        data = b""
        end = time.time() + timeout
        while not data.endswith(b"\n") and time.time() < end:
            import select
            r, _, _ = select.select([self.fd], [], [], 0.05)
            if r:
                data += os.read(self.fd, 256)
        return data

    def write(self, data):
        os.write(self.fd, data)

    def close(self):
        os.close(self.fd)
        self.proc.terminate()
        self.proc.wait()


def run(home, program, user=None, typed=""):
    """Runs `program` (text) in Console mode, then the lines `typed` at the
    prompt; returns the output."""
    path = os.path.join(home, "prog.bas")
    with open(path, "w") as f:
        f.write(program)
    env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=os.path.join(home, "config"),
               XDG_STATE_HOME=os.path.join(home, "state"), XDG_DATA_HOME=os.path.join(home, "data"),
               QT_QPA_PLATFORM="offscreen")
    cmd = [EXE, "/c", path]
    if user is not None:
        cmd = ["setpriv", "--reuid=" + str(user.pw_uid), "--regid=" + str(user.pw_gid), "--clear-groups"] + cmd
    out = subprocess.run(cmd, cwd=home, env=env, input=typed.encode(), stdout=subprocess.PIPE,
                         stderr=subprocess.STDOUT, timeout=60)
    return out.stdout.decode(errors="replace")


def main():
    if shutil.which("socat") is None:
        print("socat is missing: run scripts/install-deps run test")
        return 1
    home = tempfile.mkdtemp()
    try:
        pair = PtyPair(home)
        try:
            # The instrument: answers each line it gets, as the program expects.
            got = []

            def instrument():
                line = pair.read_line()
                got.append(line)
                pair.write(b"pong\r\n")
                line = pair.read_line()
                got.append(line)
                pair.write(b"1.5,\"a, b\"\r")
                time.sleep(0.3)  # the LF comes after the message was taken
                pair.write(b"\nXYZ")

            t = threading.Thread(target=instrument)
            t.start()
            out = run(home, f"""serialtimeout = 5
open "s", #1, "{pair.port}", 256000, "even", 2, 32
print #1, "ping"
line input #1, a$
print "[" + a$ + "]"
print #1, "values?"
input #1, x, b$
print x; "[" + b$ + "]"; input(1, 3)
close #1
""")
            t.join()
            check("the line sent arrives with a line feed", got[:1] == [b"ping\n"], repr(got))
            check("LINE INPUT # takes the answer without CR LF", "[pong]" in out, out)
            check("INPUT # reads values; CR then LF ends one message; input() takes bytes",
                  "1.5[a, b]XYZ" in out, out)

            out = run(home, f"""serialtimeout = 0.3
open "s", #1, "{pair.port}"
line input #1, a$
""")
            check("no answer within serialtimeout gives 321", "ERROR - SERIAL input timeout." in out, out)

            # The rest of a message that is too long is dropped as it comes;
            # the messages after it are kept.
            pair.write(b"0123456789ABCDEF")
            late = threading.Timer(0.5, lambda: pair.write(b"GHIJ\r\nok\r\nlast\n"))
            late.start()
            out = run(home, f"""serialtimeout = 2
open "s", #1, "{pair.port}", 9600, "no", 1, 8
line input #1, a$
""", typed='line input #1, b$\nline input #1, c$\nprint "[" + b$ + "][" + c$ + "]"\n')
            late.join()
            check("a message longer than the record length gives 319",
                  "ERROR - SERIAL input buffer overflow (message too long)." in out, out)
            check("the rest of the long message is dropped, the next ones read", "[ok][last]" in out, out)

            out = run(home, f"""open "{pair.port}" for serial as #1 len = 4
print #1, "12345"
""")
            check("a line longer than the record length gives 318",
                  "ERROR - Attempt to read/write beyond SERIAL record length." in out, out)
            pair.read_line(timeout=0.3)

            for params, message in [('300000', "Invalid baud rate for SERIAL open."),
                                    ('49', "Invalid baud rate for SERIAL open."),
                                    ('9600, "bad"', "Invalid patiry for SERIAL open."),
                                    ('9600, "odd", 1.5', "Invalid stop bits for SERIAL open."),
                                    ('9600, "mark", 3', "Invalid stop bits for SERIAL open.")]:
                out = run(home, f'open "s", #1, "{pair.port}", {params}\n')
                check(f"open with {params} is refused", "ERROR - " + message in out, out)

            out = run(home, f'open "s", #1, "{pair.port}"\nopen "s", #2, "{pair.port}"\n')
            check("a port open as one number cannot be opened as another",
                  f"{pair.port} is already open as file #1." in out and "ERROR - OPEN file failed." in out, out)

            out = run(home, 'open "s", #1, "/dev/ttyS-none"\n')
            check("a port that does not exist is named",
                  "There is no serial port /dev/ttyS-none." in out and "ERROR - OPEN file failed." in out, out)
            out = run(home, f'open "s", #1, "{home}/prog.bas"\n')
            check("a file that is no port is refused", "is not a serial port." in out, out)

            # A port of the group "dialout" that the user is not in: the port
            # is handed to that group and the program runs as "nobody", which
            # only root can arrange.
            if os.geteuid() != 0:
                print("skip the permission message: giving the port to another group needs root")
                return finish()
            device = os.path.realpath(pair.port)
            nobody = pwd.getpwnam("nobody")
            os.chown(device, 0, grp.getgrnam("dialout").gr_gid)
            os.chmod(device, 0o660)
            os.chmod(home, 0o755)
            os.chmod(os.path.join(home, "prog.bas"), 0o644)
            nobody_home = tempfile.mkdtemp(dir="/tmp")
            os.chmod(nobody_home, 0o777)
            shutil.copy(os.path.join(home, "prog.bas"), nobody_home)
            try:
                out = run(nobody_home, f'open "s", #1, "{device}"\nprint "not reached"\n', user=nobody)
            finally:
                shutil.rmtree(nobody_home, ignore_errors=True)
            check("the permission message names the group and what to do",
                  f'No permission to open {device}: it belongs to the group "dialout".' in out
                  and "sudo usermod -aG dialout $USER" in out and "ERROR - OPEN file failed." in out
                  and "not reached" not in out, out)
        finally:
            pair.close()
    finally:
        shutil.rmtree(home, ignore_errors=True)
    return finish()


def finish():
    if failures:
        print(f"{len(failures)} failed")
        return 1
    print("PASS")
    return 0


if __name__ == "__main__":
    sys.exit(main())
