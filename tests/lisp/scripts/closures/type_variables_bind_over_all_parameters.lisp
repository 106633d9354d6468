(define f (closure ((x :a) (y :b) (z :a)) z))
(print (f 1 "b" 2))
(f 1 "b" "c")
