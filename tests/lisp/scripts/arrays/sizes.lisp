(print (array-size (array 1 ":any")))
(print (array-size (array 1000 ":boolean")))
(array-size (list 1))
