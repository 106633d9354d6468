(head (display "evaluated") 2)
(cons (display "evaluated"))
