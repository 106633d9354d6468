(print (set! nowhere (do (display "evaluated") 1)))
nowhere
