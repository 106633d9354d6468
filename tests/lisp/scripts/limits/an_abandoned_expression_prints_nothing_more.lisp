(define f (closure () (+ 1 (f))))
(do (print (f)) (display "no") (head (list)) nowhere)
(list (display "before") (f) (display "no"))
(display "behind")
