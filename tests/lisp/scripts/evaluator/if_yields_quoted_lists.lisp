(print (if :true '(1 2) '(3)))
(print (if :false '(1 2) '(3)))
