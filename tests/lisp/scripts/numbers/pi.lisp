(print +pi+)
(print (= +pi+ 3.141592653589793))
