(define xs '(1 2))
(define m (macro (a) (do (set! xs :nil) (garbage-collection) (f '(4 5 6 7 8 9 10 11 12)) (list-size ,a))))
(define f (closure ((x)) x))
;;; next script
(print (m xs))
(print xs)
