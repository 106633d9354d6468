(define f (closure ((n)) (define local n) local))
(print (f 1))
(print (f 2))
local
