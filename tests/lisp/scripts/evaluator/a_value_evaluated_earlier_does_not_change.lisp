(define x 1)
(print (list-size (list x (set! x 2) x)))
(print (+ (* x 10) (set! x 3) x))
