(define m (macro (f a) (,f ,a 1)))
(print (m + 4))
(print (m - 4))
