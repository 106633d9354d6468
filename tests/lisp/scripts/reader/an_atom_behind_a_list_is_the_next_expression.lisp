(print 1) 5
