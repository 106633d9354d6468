(define f (closure () later))
(f)
(define later 5)
(print (f))
