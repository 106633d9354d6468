((if :true + *) 3 4)
((closure ((x)) (* x x)) 5)
(print ((if :false + *) 3 4))
(print ((closure ((x)) (* x x)) 5))
