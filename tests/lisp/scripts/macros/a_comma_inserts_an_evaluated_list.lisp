(define m (macro (a) (list , (+ 1 2) ,(* 2 2))))
(macro-expand (m 0))
(print (m 0))
(print (head (tail (m 0))))
