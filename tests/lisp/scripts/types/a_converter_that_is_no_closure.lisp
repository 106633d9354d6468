(define-type :odd-one () (5))
(define-type :odd-one () (:nil "text"))
(define-type :odd-one () (:nil :nil (list 1)))
(print (head (type-list)))
