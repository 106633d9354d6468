(define xs (list 1 2 3))
(for-each (closure ((x)) (set! xs :nil) (print x)) xs)
(print xs)
