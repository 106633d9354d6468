(define m (macro (x) (do , (do (set! m :nil) (garbage-collection) (set! litter (list 1 2 3 4 5 6 7 8)) (list)) (display "still") (print ,x))))
(define litter :nil)
;;; next script
(m "argument")
