(define f (closure ((x)) (load "other") x))
(print (f 1))
(print made)
;;; file base/other.lisp
(define made "in the root")
(print x)
