(print)
(print 1 2)
