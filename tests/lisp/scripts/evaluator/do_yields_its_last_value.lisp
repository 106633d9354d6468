(print (do 1 2 3))
(print (do))
(print (do (display "first") "second"))
