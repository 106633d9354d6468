(print (read "%s%n"))
(print %d)
(define %s 1)
(define %s 2)
