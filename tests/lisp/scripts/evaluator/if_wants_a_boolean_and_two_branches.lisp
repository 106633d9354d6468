(print (if :nil 1 2))
(if 1 (display "no") (display "no"))
(if :true 1)
(if :true 1 2 3)
