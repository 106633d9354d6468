(define x 10)
(print x)
