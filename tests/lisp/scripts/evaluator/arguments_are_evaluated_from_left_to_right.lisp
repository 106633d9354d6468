(define show (closure ((x)) (print x) x))
(list (show 1) (show 2) (show 3))
