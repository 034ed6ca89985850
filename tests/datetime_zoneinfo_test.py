#!/usr/bin/env python3
"""Checks the interpreter's time-zone conversions against Python's zoneinfo,
which reads the same system database with its own code.

For every zone below: each change of offset or abbreviation from 1970 to
2037 is found by a day-by-day walk and a bisection to the second; UTC
seconds on both sides of it are converted to local time, and local times
before, inside and after its gap or overlap are converted to UTC (a local
time in a gap or overlap takes the offset in force before the change, as
zoneinfo does with fold=0). Random instants from 1900 to 2200 follow,
which also reach the yearly rules after the files' last transition.

usage: datetime_zoneinfo_test.py PROBE
"""
import random
import subprocess
import sys
from datetime import datetime, timedelta, timezone
from zoneinfo import ZoneInfo

ZONES = [
    "UTC", "Etc/GMT+5", "Europe/Berlin", "Europe/London", "Europe/Dublin", "Europe/Moscow",
    "Europe/Lisbon", "America/New_York", "America/Chicago", "America/Denver", "America/Los_Angeles",
    "America/Phoenix", "America/Sao_Paulo", "America/Santiago", "America/St_Johns", "America/Havana",
    "America/Nuuk", "Asia/Tokyo", "Asia/Kolkata", "Asia/Kathmandu", "Asia/Tehran", "Asia/Jerusalem",
    "Asia/Gaza", "Australia/Sydney", "Australia/Lord_Howe", "Australia/Adelaide", "Pacific/Auckland",
    "Pacific/Chatham", "Pacific/Apia", "Pacific/Kiritimati", "Africa/Casablanca", "Africa/Cairo",
    "Antarctica/Troll",
]
EPOCH = datetime(1970, 1, 1, tzinfo=timezone.utc)


def state(z, t):
    d = EPOCH + timedelta(seconds=t)
    local = d.astimezone(z)
    return int(local.utcoffset().total_seconds()), local.tzname(), local


def transitions(z, start, stop):
    """UTC seconds where the offset or the abbreviation changes, in [start, stop)."""
    found = []
    t = start
    prev = state(z, t)[:2]
    while t < stop:
        nxt = t + 86400
        cur = state(z, nxt)[:2]
        if cur != prev:
            lo, hi = t, nxt  # state(lo) == prev, state(hi) != prev
            while hi - lo > 1:
                mid = (lo + hi) // 2
                if state(z, mid)[:2] == prev:
                    lo = mid
                else:
                    hi = mid
            found.append(hi)
            # a second change within the same day is found from hi on
            t = hi
            prev = state(z, hi)[:2]
            continue
        t = nxt
        prev = cur
    return found


def expect_utc(z, t):
    off, abbr, local = state(z, t)
    return "%d %s %04d-%02d-%02d %02d:%02d:%02d" % (off, abbr, local.year, local.month, local.day,
                                                  local.hour, local.minute, local.second)


def expect_local(z, local_seconds):
    d = datetime(1970, 1, 1) + timedelta(seconds=local_seconds)
    aware = d.replace(tzinfo=z, fold=0)
    return "%d" % round(aware.timestamp()), d


def main():
    probe = subprocess.Popen([sys.argv[1]], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    failures = 0
    checks = 0
    change_count = 0

    def ask(line):
        probe.stdin.write(line + "\n")
        probe.stdin.flush()
        return probe.stdout.readline().strip()

    rng = random.Random(20261124)
    start = int((datetime(1970, 1, 1, tzinfo=timezone.utc) - EPOCH).total_seconds())
    stop = int((datetime(2038, 1, 1, tzinfo=timezone.utc) - EPOCH).total_seconds())
    far_start = int((datetime(1900, 1, 1, tzinfo=timezone.utc) - EPOCH).total_seconds())
    far_stop = int((datetime(2200, 1, 1, tzinfo=timezone.utc) - EPOCH).total_seconds())
    for name in ZONES:
        if ask("Z " + name) != "ok":
            print("cannot load", name)
            failures += 1
            continue
        z = ZoneInfo(name)
        changes = transitions(z, start, stop)
        change_count += len(changes)
        utc_points = []
        local_points = []
        for t in changes:
            before = state(z, t - 1)[0]
            after = state(z, t)[0]
            utc_points += [t - 3600, t - 1, t, t + 1, t + 3600]
            for base in (t + before, t + after):
                local_points += [base - 3600, base - 1, base, base + 1, base + 1800]
        for _ in range(150):
            utc_points.append(rng.randrange(start, stop))
            local_points.append(rng.randrange(start, stop))
        for _ in range(50):
            utc_points.append(rng.randrange(far_start, far_stop))
            local_points.append(rng.randrange(far_start, far_stop))
        for t in utc_points:
            want = expect_utc(z, t)
            got = ask("U %d" % t)
            checks += 1
            if got != want:
                failures += 1
                if failures < 30:
                    print("%s UTC %d: got %r, want %r" % (name, t, got, want))
        for l in local_points:
            want, d = expect_local(z, l)
            got = ask("L %d %d %d %d %d %d" % (d.year, d.month, d.day, d.hour, d.minute, d.second))
            checks += 1
            if got != want:
                failures += 1
                if failures < 30:
                    print("%s local %s: got %r, want %r" % (name, d, got, want))
    probe.stdin.close()
    probe.wait()
    print("%d zones, %d changes of offset or abbreviation, %d checks, %d failures"
          % (len(ZONES), change_count, checks, failures))
    return 1 if failures or change_count < 500 else 0


if __name__ == "__main__":
    sys.exit(main())
