(set! *load-path* (list "base/first/" "base/second/"))
(load "both")
(load "one")
(load "none")
;;; file base/first/both.lisp
(display "first")
;;; file base/second/both.lisp
(display "second")
;;; file base/second/one.lisp
(display "one")
