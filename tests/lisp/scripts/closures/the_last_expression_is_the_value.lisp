(print ((closure () 1 "two" 3.5)))
