(print "")
(print (string-size ""))
