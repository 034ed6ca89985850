// Reads a data file of temperature readings and writes a report.
//
// The data file "readings.csv" holds one reading a line: the station's name
// in quotes, the day and the temperature. This program first writes a small
// sample of it with WRITE # (delete those lines to read your own file), then
// reads it back with INPUT #, sums the readings of each station and writes
// "report.txt", which it also shows.

// --- the sample data file
open "readings.csv" for output as #1
for i = 1 to 12
  read station$, day, t
  write #1, station$, day, t
next i
close #1
data "North Hill", 1, 12.5, "North Hill", 2, 14.0, "North Hill", 3, 11.25
data "Lake Shore", 1, 16.0, "Lake Shore", 2, 15.5, "Lake Shore", 3, 17.75
data "Old Mill, East", 1, 9.5, "Old Mill, East", 2, 8.0, "Old Mill, East", 3, 10.5
data "Lake Shore", 4, 18.25, "North Hill", 4, 13.0, "Old Mill, East", 4, 7.75

// --- read it: one total, count, lowest and highest per station
dim names$(20), total(20), count(20), low(20), high(20)
stations = 0
lines = 0
open "readings.csv" for input as #1
while eof(1) = 0
  input #1, station$, day, t
  lines = lines + 1
  k = 0
  for j = 1 to stations
    if names$(j) = station$ then k = j
  next j
  if k = 0 then stations = stations + 1 : k = stations : names$(k) = station$ : low(k) = t : high(k) = t
  total(k) = total(k) + t
  count(k) = count(k) + 1
  if t < low(k) then low(k) = t
  if t > high(k) then high(k) = t
wend
close #1

// --- the report
open "report.txt" for output as #2
print #2, "Temperature report: "; str$(lines, "%.0f"); " readings from "; str$(stations, "%.0f"); " stations"
print #2,
print #2, "Station"; tab(20); "Readings"; tab(30); "Mean"; tab(40); "Lowest"; tab(50); "Highest"
for k = 1 to stations
  mean$ = str$(total(k) / count(k), "%6.2f")
  print #2, names$(k); tab(20); str$(count(k), "%8.0f"); tab(30); mean$; tab(40); str$(low(k), "%6.2f"); tab(50); str$(high(k), "%7.2f")
next k
close #2

// --- show what was written
open "report.txt" for input as #2
while eof(2) = 0
  line input #2, a$
  print a$
wend
print "("; str$(filesize(2), "%.0f"); " bytes in report.txt)"
close
