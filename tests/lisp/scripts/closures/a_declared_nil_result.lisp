(define f (closure () -> :nil 5))
(print (f))
(define g (closure () -> :nil (display "x")))
(print (g))
