(print (string-size ""))
(print (string-size "abc"))
(string-size 5)
