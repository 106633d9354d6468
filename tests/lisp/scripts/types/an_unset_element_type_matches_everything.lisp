(print (map string-size '("a" "bc")))
(print (+ (head '(1 2)) 1))
(print (list-size '(1 "a")))
