(define x 3)
(print x)
x  
