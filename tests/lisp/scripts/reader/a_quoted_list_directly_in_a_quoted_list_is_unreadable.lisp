(print '('(1)))
