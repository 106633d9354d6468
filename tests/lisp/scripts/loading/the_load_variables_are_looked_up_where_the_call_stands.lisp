(define f (closure ((*load-path*)) (load "other")))
(f (list "base/inner/"))
(load "other")
;;; file base/inner/other.lisp
(display "inner")
;;; file base/other.lisp
(display "outer")
