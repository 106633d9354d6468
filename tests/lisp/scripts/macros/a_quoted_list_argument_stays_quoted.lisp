(define size (macro (xs) (list-size ,xs)))
(print (size '(1 2 3)))
