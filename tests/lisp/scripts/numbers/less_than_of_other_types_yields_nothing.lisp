(print (< "a" "b"))
(print (< :true :false))
(print (< :a :b))
(print (< :nil :nil))
