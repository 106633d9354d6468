(define t (hash-table ":any" ":any"))
(hash-table-put! t "self" t)
(hash-table-put! t t "key")
(print (hash-table-get (hash-table-get t "self") t))
;;; next script
(garbage-collection)
(print (hash-table-get (hash-table-get t "self") t))
(print (hash-table-size t))
