;;; full region only
(define outer (hash-table ":any" ":any"))
(define fill (closure ((n :integer)) (if (= n 0) :nil (do
    (define inner (hash-table ":any" ":any"))
    (hash-table-put! inner n (list n))
    (hash-table-put! outer inner inner)
    (fill (- n 1))))))
(set! fill (closure ((n :integer)) (if (= n 0) :nil (do
    (put-one (hash-table ":any" ":any") n)
    (fill (- n 1))))))
(define put-one (closure ((inner) (n)) (hash-table-put! inner n (list n)) (hash-table-put! outer inner inner)))
(fill 18000)
(define total 0)
;;; next script
(garbage-collection)
(define litter '(1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26 27 28 29 30 31 32 33 34 35 36))
(define inner-sum (closure ((k) (v)) (set! total (+ total (head v)))))
(hash-table-for-each (closure ((k) (v)) (hash-table-for-each inner-sum k)) outer)
(print total)
