(define x 1)
(define f (closure () (define x 2) x))
(print (f))
(print x)
