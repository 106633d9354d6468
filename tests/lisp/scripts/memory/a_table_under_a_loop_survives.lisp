(define t (hash-table ":string" ":any"))
(hash-table-put! t "a" (list "value"))
;;; next script
(define litter :nil)
(hash-table-for-each
    (closure ((k) (v))
        (set! t :nil)
        (garbage-collection)
        (set! litter (list 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26 27 28 29 30 31 32))
        (print k)
        (print (head v)))
    t)
