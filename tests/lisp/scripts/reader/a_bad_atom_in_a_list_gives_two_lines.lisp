(print 1)
(print a:b)
(print 2)
