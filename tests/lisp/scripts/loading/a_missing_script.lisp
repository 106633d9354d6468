(print (load "nosuch"))
(print (load ""))
(load 5)
