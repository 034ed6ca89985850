rem Conversions in zones, the gap and overlap rule, rules files, the no-date value
settimezone "Europe/Berlin"
t = makedatetime(2026, 3, 29, 2, 30)
print "in the spring gap:  "; formatdatetime$(t, "%F %T %Z %:z")
t = makedatetime(2026, 10, 25, 2, 30)
print "overlap: "; formatdatetime$(t, "%F %T %Z"); ", 1 h on: "; formatdatetime$(t + 3600, "%T %Z")
settimezone "Australia/Sydney"
t = makedatetime(2026, 10, 4, 2, 30)
print "southern gap:  "; formatdatetime$(t, "%F %T %Z")
t = makedatetime(2026, 4, 5, 2, 30)
print "southern overlap: "; formatdatetime$(t, "%F %T %Z")
settimezone "UTC-03:30"
print formatdatetime$(1e9, "%F %T %Z %z")
settimezone "utc"
print formatdatetime$(1e9 + 0.987654321, "%a %d %b %Y %I:%M:%S.%3f %p, day %j, weekday %u/%w, %e|%y|%%")
print formatdatetime$(1e9 + 0.9996, "%T.%3f"); "  "; formatdatetime$(1e9 + 0.9996, "%T")
print formatdatetime$(makedatetime(-44, 3, 15, 12), "%F %A")
print formatdatetime$(-1.593625448111377e17), formatdatetime$(1.593625448111377e17)
setdstrules
print "plant rules: "; formatdatetime$(makedatetime(2026, 4, 5, 2, 30), "%F %T %Z"); " / "; formatdatetime$(makedatetime(2026, 9, 27, 2, 30), "%T %Z")
setdstrules "dstrules.txt"
expanddatetime makedatetime(2026, 7, 14, 18, 5, 9.5), y, mo, d, h, mi, s, wd, yd
print y; mo; d; h; mi; s; wd; yd
updatedatetime makedatetime(2026, 12, 31, 23, 59, 59)
print date$; " "; time$; " "; dayofweek$
print "no date: ["; formatdatetime$(defaultzerodatetime); "] "; makedatetime(0, 0, 0) = defaultzerodatetime
expanddatetime defaultzerodatetime, y, mo, d
print y; mo; d
defaultzerodatetime = -1
print formatdatetime$(0, "%F %T %Z"); " ["; formatdatetime$(-1); "]"
settimezone
print "back to the system's zone"
rem Random round trips: expand, make and format agree.
randomize 20261124
settimezone "America/New_York"
n = 0
later = 0
for i = 1 to 3000
  t = int((rnd(1) * 2 - 1) * 5e9) + int(rnd(1) * 1000) / 1000
  expanddatetime t, y, mo, d, h, mi, s
  u = makedatetime(y, mo, d, h, mi, s)
  if formatdatetime$(u, "%F %T.%3f") <> formatdatetime$(t, "%F %T.%3f") then n = n + 1
  if u <> t then if t - u = 3600 and formatdatetime$(u, "%Z") <> formatdatetime$(t, "%Z") then later = later + 1 else n = n + 1
next i
print "round trips: 3000, failures:"; n; ", second occurrences in an overlap:"; later
