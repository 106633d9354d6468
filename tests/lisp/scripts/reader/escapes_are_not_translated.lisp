(print (string-size "\n"))
(display "a\tb")
