(define f (closure ((x) (x)) x))
(print (f 1 2))
