(define m (macro (n) (+ ,,@ (list 1 2 n))))
(print (m 3))
(macro-expand (m 3))
