(define m (macro () ()))
(m)
(macro-expand (m))
