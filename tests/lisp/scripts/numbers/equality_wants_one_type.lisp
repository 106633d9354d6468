(print (= 1 1.0))
(print (= 1 (byte 1)))
