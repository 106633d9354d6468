(define m (macro (x) '(+ ,x 1)))
(print (m 1))
(define n (macro (x) (list-size '(1 ,x 3))))
(print (n 2))
