(print 0xfffffffffffffffff)
