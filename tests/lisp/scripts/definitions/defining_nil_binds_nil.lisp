(define x :nil)
(print x)
(print (get x))
