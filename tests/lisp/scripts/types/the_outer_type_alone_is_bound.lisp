(print (= (list 1) (list "a")))
(= (list 1) 5)
