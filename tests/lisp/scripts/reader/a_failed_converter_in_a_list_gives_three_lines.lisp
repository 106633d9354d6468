(print 007)
