(print (eval (list)))
