(print a'b)
