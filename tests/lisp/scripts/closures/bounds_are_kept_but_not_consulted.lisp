(define f (closure ((x :a)) => ((:a :integer)) -> :a x))
(print (f "text"))
