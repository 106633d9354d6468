(display "two backslashes \\")
(print 1)
