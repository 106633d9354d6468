(define a (array 1 ":integer"))
(print (array-set! a 0 5))
