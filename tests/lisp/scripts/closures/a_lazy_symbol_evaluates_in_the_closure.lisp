(define x 1)
(define f (closure ((name :lazy) (x)) (eval name)))
(print (f x 2))
