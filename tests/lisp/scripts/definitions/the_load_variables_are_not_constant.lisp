(define *load-path* (list "a/"))
(set! *load-extension* ".script")
(print (head *load-path*))
(print *load-extension*)
