(print (list-size (list '(1) (list 2) '(3))))
