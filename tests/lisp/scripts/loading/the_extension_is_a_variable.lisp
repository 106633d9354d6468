(set! *load-extension* ".script")
(load "other")
;;; file base/other.script
(display "script")
;;; file base/other.lisp
(display "no")
