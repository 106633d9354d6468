(define increment (macro (x) (+ ,x 1)))
(print (increment 4))
(print (increment (* 2 3)))
