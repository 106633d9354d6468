(print (list 1 (list #)))
