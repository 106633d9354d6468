(print (list 1 "a" 2.5))
(print (list 1 "a" 2))
(- 1 2 "a")
