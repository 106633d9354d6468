(print (to-hash "ä"))
