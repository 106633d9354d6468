(print (map string-size '("a" 2 "abc")))
