(define show (macro () (list local)))
(define f (closure ((local)) (head (show))))
(print (f "mine"))
