(define m (macro (a) (list , (+ a 1))))
(print (head (m 5)))
(define f (closure ((local)) (head (m local))))
(print (f 10))
