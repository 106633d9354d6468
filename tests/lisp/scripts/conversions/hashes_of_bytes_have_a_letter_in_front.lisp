(print (to-hash (byte 0)))
(print (= (to-hash (byte 0)) (to-hash "b0")))
(print (= (to-hash (byte 255)) (to-hash "b255")))
(print (= (to-hash (byte 5)) (to-hash 5)))
