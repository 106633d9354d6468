(define text (closure () "text"))
(define number (closure () -> :integer (text)))
(define outer (closure () -> :integer (number)))
(print (outer))
