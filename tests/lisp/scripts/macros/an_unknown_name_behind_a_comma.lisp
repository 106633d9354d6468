(define m (macro (a) (list ,nosuch)))
(print (m 1))
(define n (macro (a) (list ,@ nosuch)))
(print (n 1))
