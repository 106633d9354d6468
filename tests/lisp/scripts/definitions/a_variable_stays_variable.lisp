(define x 1)
(define x 2)
(set! x 3)
(print x)
