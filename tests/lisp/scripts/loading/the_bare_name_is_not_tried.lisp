(set! *load-path* (list "elsewhere/"))
(set! *load-extension* "")
(print (load "base/other.lisp"))
;;; file base/other.lisp
(display "no")
