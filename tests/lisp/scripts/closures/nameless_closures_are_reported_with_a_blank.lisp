((closure ((n :integer)) n) "a")
(define f 1)
(set! f (closure ((n :integer)) n))
(f "b")
