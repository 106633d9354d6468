(define twice (closure ((f (:a -> :a)) (x :a)) (f (f x))))
(print (twice bit-not 5))
(twice string-size "abc")
(twice bit-not "abc")
