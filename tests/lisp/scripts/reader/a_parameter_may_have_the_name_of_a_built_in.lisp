(define f (closure ((list)) list))
(print (f 3))
(print (list 1 2))
