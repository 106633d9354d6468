(define s "0123456789")
(define s100 (+ s s s s s s s s s s))
(define long (+ s100 s100 s100 s100 s100 s100 s100 s100 s100 s100))
(print (load (+ long "0123456789abc")))
(set! *load-path* (list (+ long long) "base/"))
(load "other")
;;; file base/other.lisp
(display "other")
