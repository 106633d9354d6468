(print (from-string :nosuch "x"))
(from-string :any "x")
(from-string :nil "x")
(from-string "string" "x")
