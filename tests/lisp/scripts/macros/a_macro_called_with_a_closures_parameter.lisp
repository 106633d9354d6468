(define unless (macro (condition body) (if ,condition :nil ,body)))
(define f (closure ((n :integer)) (unless (< n 3) (print n))))
(f 1)
(f 5)
