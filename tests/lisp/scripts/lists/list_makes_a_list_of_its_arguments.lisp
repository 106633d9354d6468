(print (list))
(print (list 1 2 3))
(print (list 1 "a"))
(print (head (list (+ 1 2))))
