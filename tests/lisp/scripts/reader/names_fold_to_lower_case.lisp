(define Foo 1)
(PRINT fOO)
(print :KeyWord)
(print (read "BAR"))
