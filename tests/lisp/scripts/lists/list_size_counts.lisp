(print (list-size (list)))
(print (list-size '(1 (2 3) "x")))
(list-size "text")
