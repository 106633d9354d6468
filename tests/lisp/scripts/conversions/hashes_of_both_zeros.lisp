(print (to-hash 0.0))
(print (to-hash -0.0))
