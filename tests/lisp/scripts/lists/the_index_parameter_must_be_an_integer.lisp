(map-with-index (closure ((i) (x)) x) (list 1 2))
(for-each-with-index (closure ((i) (x)) x) '(1 2))
