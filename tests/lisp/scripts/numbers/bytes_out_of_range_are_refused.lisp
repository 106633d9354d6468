(print (byte 256))
(print (byte -1))
(byte 1.0)
