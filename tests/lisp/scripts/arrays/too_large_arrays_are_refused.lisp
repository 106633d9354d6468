(print (array 500000000 ":integer"))
(print (array 536870912 ":byte"))
(display "still here")
