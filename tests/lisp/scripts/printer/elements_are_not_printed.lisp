(define a (array 1 ":any"))
(array-set! a 0 a)
(print a)
(print (list (list (list "deep"))))
