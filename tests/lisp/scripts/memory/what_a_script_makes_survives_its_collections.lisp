(define xs (list "a" "b"))
(define make (closure () (list (+ "c" "d") (garbage-collection) (+ "e" "f"))))
(for-each print (make))
(for-each print xs)
