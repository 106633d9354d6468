(define t (hash-table ":any" ":any"))
(print (hash-table-put! t 1 :nil))
(print (hash-table-contains? t 1))
(print (hash-table-get t 1))
