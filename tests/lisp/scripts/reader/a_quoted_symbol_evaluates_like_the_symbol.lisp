(define x 3)
(print 'x)
(print x)
(print 'y)
