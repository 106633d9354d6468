(print '())
(print (list))
