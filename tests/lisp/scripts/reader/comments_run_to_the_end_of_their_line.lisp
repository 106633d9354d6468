(print 1) ; one
; (print 2)
; directly behind a comment
(print 3) ;;; three
