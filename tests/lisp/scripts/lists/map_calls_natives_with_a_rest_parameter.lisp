(define rows (map list (list 1 2)))
(print rows)
(print (head rows))
