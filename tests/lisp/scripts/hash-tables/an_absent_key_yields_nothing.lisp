(define t (hash-table ":string" ":integer"))
(print (hash-table-get t "a"))
