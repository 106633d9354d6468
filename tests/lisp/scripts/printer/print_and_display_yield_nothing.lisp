(print (print 1))
(print (display "x"))
