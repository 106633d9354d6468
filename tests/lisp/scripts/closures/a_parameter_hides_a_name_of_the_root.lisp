(define x "root")
(define f (closure ((x)) x))
(print (f "inner"))
(print x)
