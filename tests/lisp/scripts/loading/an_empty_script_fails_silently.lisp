(print (load "empty"))
(print (load "comments"))
;;; file base/empty.lisp
;;; file base/comments.lisp
; nothing
; at all
