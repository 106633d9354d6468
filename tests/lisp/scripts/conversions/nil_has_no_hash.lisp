(print (to-hash :nil))
