(define-type :pair () ())
(define-type :pair (:first) ())
(define-type :integer () ())
(print (type-parameters :pair))
