(define f (closure ((x :lazy)) (type-of x)))
(print (f (display "no")))
(print (f nowhere))
(print (f 5))
