(print (array 1 "(:list)"))
