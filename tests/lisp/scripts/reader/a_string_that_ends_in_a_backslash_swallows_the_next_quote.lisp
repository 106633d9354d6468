(display "a\\")(display ")
