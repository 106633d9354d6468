(bit-or 1 1.0)
(bit-not "a")
(bit-and 1)
