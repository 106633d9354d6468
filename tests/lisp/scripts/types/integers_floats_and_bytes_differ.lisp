(define f (closure ((n :integer)) n))
(f 1.0)
(f (byte 1))
