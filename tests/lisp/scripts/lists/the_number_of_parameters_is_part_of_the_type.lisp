(map (closure ((a) (b)) a) (list 1))
(for-each (closure () 1) (list 1))
