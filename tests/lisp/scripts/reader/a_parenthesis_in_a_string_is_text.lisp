(display ")(")
(print '("(" ")"))
