(define-type :plain () ())
(print (type-parameters :plain))
(print (head (type-list)))
