(print (load "one"))
;;; file base/one.lisp
(display "one begins")
(load "two")
(display "one ends")
;;; file base/two.lisp
(display "two")
