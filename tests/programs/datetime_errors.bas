print "date-time errors: each typed line below fails and the next still runs"
settimezone "Europe/Berlin"
