(if :true (display "then") (display "else"))
(if :false (display "then") (display "else"))
(print (if (< 1 2) 1 2))
(print (if (< 2 1) 1 2))
