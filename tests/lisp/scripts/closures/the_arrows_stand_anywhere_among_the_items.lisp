(define f (closure ((n :integer)) (print n) -> :integer (+ n 1) => ((:a :integer))))
(print f)
(print (f 1))
