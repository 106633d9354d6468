(print 1)
