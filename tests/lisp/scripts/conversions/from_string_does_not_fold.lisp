(print (from-string :symbol "Name"))
(print (from-string :keyword ":Key"))
