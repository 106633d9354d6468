(define apply (closure ((f (:any -> :any))) (f 1)))
(print (apply (closure ((n :integer)) -> :integer n)))
(print (apply (closure ((n)) n)))
