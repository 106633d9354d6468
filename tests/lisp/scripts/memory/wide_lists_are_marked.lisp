(define make (closure ((n :integer) (xs)) (if (= n 0) xs (make (- n 1) (cons (list n) xs)))))
(define wide (make 20000 (list)))
(define sum (closure ((xs) (total :integer)) (if (= (list-size xs) 0) total (sum (tail xs) (+ total (head (head xs)))))))
;;; next script
(garbage-collection)
(define litter '(1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26 27 28 29 30 31 32 33 34 35 36))
(print (sum wide 0))
