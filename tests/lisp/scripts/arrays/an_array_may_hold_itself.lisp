(define a (array 2 ":any"))
(array-set! a 0 a)
(array-set! a 1 "end")
(print (array-get (array-get (array-get a 0) 0) 1))
;;; next script
(garbage-collection)
(print (array-get (array-get (array-get a 0) 0) 1))
