(map string-size (list 1 2))
