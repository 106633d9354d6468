(define f (closure ((n)) (define n 5) n))
(print (f 1))
