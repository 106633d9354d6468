(print 12;x
34)
