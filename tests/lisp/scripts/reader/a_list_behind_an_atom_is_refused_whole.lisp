5 (print 1)
