(print (eval (cons + (list 1 2))))
