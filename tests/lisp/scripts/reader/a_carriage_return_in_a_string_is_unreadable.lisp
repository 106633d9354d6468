(print 1)
(display "ab")
