(print ''x)
