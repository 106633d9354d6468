(print (do 1 nowhere))
(define f (closure () 1 (head (list))))
(print (f))
