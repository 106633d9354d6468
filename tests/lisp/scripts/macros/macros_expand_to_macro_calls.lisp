(define one (macro (x) (+ ,x 1)))
(define two (macro (x) (one (one ,x))))
(print (two 5))
