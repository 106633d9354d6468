(define m (macro (x) (list ,nosuch)))
(display "made")
(m 1)
