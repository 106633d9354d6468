()
(print ())
