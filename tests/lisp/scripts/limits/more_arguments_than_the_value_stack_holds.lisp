;;; full region only
(define make (closure ((n :integer) (xs)) (if (= n 0) xs (make (- n 1) (cons 1 xs)))))
(define many (make 20000 (list)))
(eval (cons list many))
(display "behind")
