(define n (macro (a xs :rest) (list (,@ xs) ,a)))
(macro-expand (n 1 + 2 3))
(print (head (n 1 + 2 3)))
