(define f (closure ((all :rest)) all))
(print (f))
(print (f 1 (+ 1 1)))
(print (head (tail (f 1 (+ 1 1)))))
