(print (eval '(+ 1 2)))
