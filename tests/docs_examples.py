#!/usr/bin/env python3
"""Runs the examples of one documentation page and compares their output.

usage: docs_examples.py TESSALINE PAGE.md [--actual]

An example is a fenced block with the info string `basic`, followed directly
(blank lines aside) by a fenced block with the info string `output` that holds
exactly what Tessaline prints:

- when the first line of the `basic` block starts with a statement number, the
  block is a program: it is saved as a file and run with `tessaline /c FILE`;
  the output starts after the "Beginning Program Execution" line;
- otherwise each line is typed at the prompt in turn (blank lines are not
  typed); the output is what the lines print, without the prompts themselves.

Each example runs in a fresh home whose working folder is empty, without
input. A `basic` block without its `output` block is an error: code that is
not to be run takes no info string. With --actual the page is not checked;
the output of every example is printed instead, for writing a new page.
"""
import difflib
import os
import re
import shutil
import subprocess
import sys
import tempfile

PROGRAM_START = re.compile(r"\A\n----- Beginning Program Execution-+\n")
CLOSING = "Command: \nPress <enter> to terminate program.\n"
PROMPTS = ("Stepping -- Command: ", "Command: ")
FENCE = re.compile(r"^( *)(`{3,})\s*([^`\s]*)")


class Example:
    def __init__(self, line, code, output_line, output):
        self.line = line
        self.code = code
        self.output_line = output_line
        self.output = output


def closes(line, fence):
    """A closing fence: only backticks, at least as many as the opening one."""
    s = line.strip()
    return s != "" and set(s) == {"`"} and len(s) >= len(fence)


def fenced_blocks(lines):
    """(first line number, info, text lines, line after it) for every fenced block;
    a fence may be indented (inside a list item)."""
    blocks = []
    i = 0
    while i < len(lines):
        m = FENCE.match(lines[i])
        if not m:
            i += 1
            continue
        indent, fence, info, start = len(m.group(1)), m.group(2), m.group(3), i
        body = []
        i += 1
        while i < len(lines) and not closes(lines[i], fence):
            # A block indented inside a list item: its lines lose that indentation.
            line = lines[i]
            body.append(line[min(indent, len(line) - len(line.lstrip(" "))):])
            i += 1
        blocks.append((start + 1, info, body, i + 1))
        i += 1
    return blocks


def examples_of(page_lines, problems, page):
    found = []
    blocks = fenced_blocks(page_lines)
    for n, (line, info, body, end) in enumerate(blocks):
        if info != "basic":
            continue
        following = blocks[n + 1] if n + 1 < len(blocks) else None
        between = page_lines[end:following[0] - 1] if following else []
        if following is None or following[1] != "output" or any(s.strip() for s in between):
            problems.append("%s:%d: a `basic` block needs an `output` block right after it "
                            "(code that is not run takes no info string)" % (page, line))
            continue
        found.append(Example(line, body, following[0], "".join(s + "\n" for s in following[2])))
    return found


def run_example(exe, example):
    scratch = tempfile.mkdtemp(prefix="tessaline-docs-")
    try:
        home = os.path.join(scratch, "home")
        work = os.path.join(scratch, "work")
        conf_dir = os.path.join(scratch, "config", "Ostraval Software")
        for d in (home, work, conf_dir):
            os.makedirs(d)
        with open(os.path.join(conf_dir, "Tessaline.conf"), "w") as f:
            f.write("[Settings]\nWorkPath=%s\n" % work)
        env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=os.path.join(scratch, "config"),
                   XDG_CACHE_HOME=os.path.join(scratch, "cache"), XDG_STATE_HOME=os.path.join(scratch, "state"),
                   XDG_DATA_HOME=os.path.join(scratch, "data"), LC_ALL="C", QT_QPA_PLATFORM="offscreen")
        code = [s for s in example.code if s.strip()]
        program = bool(code) and code[0].lstrip()[:1].isdigit()
        if program:
            with open(os.path.join(work, "example.bas"), "w") as f:
                f.write("".join(s + "\n" for s in example.code))
            args, typed = [exe, "/c", "example.bas"], ""
        else:
            args, typed = [exe, "/c"], "".join(s + "\n" for s in code)
        result = subprocess.run(args, input=typed.encode(), cwd=work, env=env, stdout=subprocess.PIPE,
                                stderr=subprocess.STDOUT, timeout=60)
        out = result.stdout.decode("utf-8", errors="replace")
    finally:
        shutil.rmtree(scratch, ignore_errors=True)
    if out.endswith(CLOSING):
        out = out[:-len(CLOSING)]
    if program:
        out = PROGRAM_START.sub("", out, count=1)
    else:
        for prompt in PROMPTS:
            out = out.replace(prompt, "")
    return out


def show(text):
    """Lines with their ends marked, so that trailing blanks show."""
    return [s + "|" for s in text.split("\n")]


def main():
    exe, page = os.path.abspath(sys.argv[1]), sys.argv[2]
    actual_only = "--actual" in sys.argv[3:]
    with open(page, encoding="utf-8") as f:
        lines = f.read().split("\n")
    name = os.path.join(os.path.basename(os.path.dirname(page)), os.path.basename(page))
    problems = []
    examples = examples_of(lines, problems, name)
    for example in examples:
        actual = run_example(exe, example)
        if actual_only:
            print("%s:%d:\n%s" % (name, example.line, actual), end="" if actual.endswith("\n") else "\n")
            continue
        if actual != example.output:
            diff = difflib.unified_diff(show(example.output), show(actual), "shown in the page", "printed", lineterm="")
            problems.append("%s:%d: the output shown at line %d is not what Tessaline prints "
                            "(line ends marked |):\n%s" % (name, example.line, example.output_line, "\n".join(diff)))
    for p in problems:
        print(p)
    if problems:
        return 1
    print("%s: %d examples as shown" % (name, len(examples)))
    return 0


if __name__ == "__main__":
    sys.exit(main())
