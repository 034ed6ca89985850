// World clock: one call at 16:00 in Berlin, on a winter day and a summer day,
// as the clocks of other cities show it. Daylight saving moves some of them.
dim city$(8), zone$(8)
for i = 0 to 7
  read city$(i), zone$(i)
next i
data "Berlin", "Europe/Berlin", "London", "Europe/London", "New York", "America/New_York"
data "Sao Paulo", "America/Sao_Paulo", "Kolkata", "Asia/Kolkata", "Tokyo", "Asia/Tokyo"
data "Sydney", "Australia/Sydney", "Auckland", "Pacific/Auckland"
settimezone "Europe/Berlin"
winter = makedatetime(2026, 1, 15, 16, 0)
summer = makedatetime(2026, 7, 15, 16, 0)
print "City        Winter call                 Summer call"
for i = 0 to 7
  settimezone zone$(i)
  print left$(city$(i) + "            ", 12); formatdatetime$(winter, "%a %d %b %H:%M %Z"); tab(41); formatdatetime$(summer, "%a %d %b %H:%M %Z")
next i
settimezone
print
print "Between the calls:"; (summer - winter) / 3600; " hours, not whole days: Berlin moved its clocks."
