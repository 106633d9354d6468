(define Ärger 1)
(print (read "ÄRGER"))
(print Ärger)
