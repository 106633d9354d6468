(print (= '(1) '(1)))
(print '(1 'a 'b))
