(print (load "endless"))
(display "behind")
;;; file base/endless.lisp
(load "endless")
