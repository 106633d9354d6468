(define t (hash-table ":any" ":any"))
(hash-table-put! t 1 (list "x" "y"))
(hash-table-put! t "1" (list "z" "w"))
;;; next script
(hash-table-for-each (closure ((k) (v)) (hash-table-remove! t 1) (hash-table-remove! t "1") (garbage-collection) (list 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26 27 28 29 30 31 32 33 34 35 36 37 38 39 40) (print v) (print (head v))) t)
(print (hash-table-size t))
