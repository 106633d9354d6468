(define make (closure ((n)) (closure ((m)) (+ n m))))
(define add (make 10))
(define n 1000)
(print (add 5))
