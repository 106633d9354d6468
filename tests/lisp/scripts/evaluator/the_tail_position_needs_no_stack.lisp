(define count (closure ((n :integer) (total :integer)) -> :integer
    (if (= n 0) total (count (- n 1) (+ total 1)))))
(print (count 20000 0))
(define rounds (closure ((n)) (do (if (< n 1) n (do 0 (rounds (- n 1)))))))
(print (rounds 20000))
