(define nest (closure ((n :integer) (x)) (if (= n 0) x (nest (- n 1) (list x)))))
(define deep (nest 3000 "bottom"))
(define depth (closure ((x) (n :integer)) (if (= (type-of x) :list) (depth (head x) (+ n 1)) n)))
;;; next script
(garbage-collection)
(define litter '(1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26 27 28 29 30 31 32 33 34 35 36))
(print (depth deep 0))
