(define second (macro (a b) (do ,b)))
(print (second (display "no") (+ 1 2)))
