(define x 1)
(define-constant x 2)
(define x 3)
(print x)
