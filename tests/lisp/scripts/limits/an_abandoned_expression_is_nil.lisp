(define f (closure () (+ 1 (f))))
(define x 1)
(set! x (f))
(print x)
