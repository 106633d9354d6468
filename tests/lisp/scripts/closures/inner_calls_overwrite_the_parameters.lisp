(define before (closure ((n :integer)) -> :integer (if (= n 0) 1 (* n (before (- n 1))))))
(define after (closure ((n :integer)) -> :integer (if (= n 0) 1 (* (after (- n 1)) n))))
(print (before 5))
(print (after 5))
