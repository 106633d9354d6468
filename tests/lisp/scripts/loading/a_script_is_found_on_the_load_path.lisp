(print (load "other"))
(print loaded)
;;; file base/other.lisp
; a comment
(define loaded "yes") ; and another
(display "loading")
