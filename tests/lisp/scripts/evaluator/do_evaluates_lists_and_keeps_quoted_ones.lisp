(print (do (+ 1 2)))
(print (do '(+ 1 2)))
