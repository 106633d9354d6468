(define f (closure () (list (eval (read "(f)")))))
(f)
(display "behind")
