(print (for-each print (list 1 2)))
(for-each print (list))
(for-each-with-index (closure ((i :integer) (x)) (print i) (print x)) (list "a" "b"))
(print (for-each-with-index (closure ((i :integer) (x)) x) (list)))
