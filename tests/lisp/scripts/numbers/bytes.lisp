(print (byte 0))
(print (byte 255))
(print (type-of (byte 1)))
