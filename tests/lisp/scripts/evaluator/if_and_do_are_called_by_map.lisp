(print (head (map do (list 1 2))))
(print (map if (list :true)))
