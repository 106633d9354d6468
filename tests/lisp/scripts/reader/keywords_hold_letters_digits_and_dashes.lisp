(print :a)
(print :2-b)
(print :-)
