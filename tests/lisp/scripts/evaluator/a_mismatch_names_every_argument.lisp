(array-set! 1 "two" 3)
