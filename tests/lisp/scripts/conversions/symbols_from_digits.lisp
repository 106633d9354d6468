(print (from-string :symbol "123"))
(print (type-of (from-string :symbol "1.5")))
