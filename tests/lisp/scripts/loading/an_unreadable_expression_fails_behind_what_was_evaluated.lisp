(print (load "other"))
(print kept)
(print lost)
;;; file base/other.lisp
(define kept 1)
(define lost 2
