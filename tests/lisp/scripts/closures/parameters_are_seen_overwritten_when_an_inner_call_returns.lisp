(define f (closure ((n :integer)) (print n) (if (< n 2) (f (+ n 1)) :nil) (print n)))
(f 0)
