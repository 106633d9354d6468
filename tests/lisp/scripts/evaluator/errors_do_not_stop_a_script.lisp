(print (head (list)))
(print nowhere)
(display "still here")
