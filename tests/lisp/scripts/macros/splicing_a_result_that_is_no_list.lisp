(define m (macro (a) (list ,,@ (+ 1 2))))
(print (m 1))
