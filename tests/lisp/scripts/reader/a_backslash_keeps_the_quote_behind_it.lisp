(display "say \"yes\"")
(print (string-size "\""))
