(define x 1)
(define x "two")
(print x)
