(define x 7)
(define m (macro () (list ,x ,x)))
(print (head (m)))
