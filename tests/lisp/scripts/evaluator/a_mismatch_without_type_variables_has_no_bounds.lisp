(bit-and 1.0 "a")
