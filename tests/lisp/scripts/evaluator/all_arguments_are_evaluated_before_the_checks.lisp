(define show (closure ((x)) (print x) x))
(string-take (show "no") (show 5))
