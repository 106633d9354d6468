(define xs '((display "no") nowhere))
(for-each (closure ((x)) (print (type-of x))) xs)
(print (type-of (head xs)))
