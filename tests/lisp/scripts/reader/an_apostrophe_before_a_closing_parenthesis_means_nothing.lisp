(print 1 ')
