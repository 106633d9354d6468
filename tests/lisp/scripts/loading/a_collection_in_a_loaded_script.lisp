(define f (closure ((x)) (load "collect") (set! litter (list 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16)) (print x)))
(define litter :nil)
;;; next script
(f (list "a"))
(set! f :nil)
;;; file base/collect.lisp
(set! f :nil)
(garbage-collection)
