(define x 5)
(define show (macro (a) (list ,a)))
(print (head (show x)))
(show unbound-name)
