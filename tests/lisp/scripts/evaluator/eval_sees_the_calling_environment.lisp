(define f (closure ((local)) (eval (read "local"))))
(print (f 42))
