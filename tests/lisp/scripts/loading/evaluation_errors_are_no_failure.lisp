(print (load "other"))
;;; file base/other.lisp
(head (list))
(list nosuch)
(display "end")
