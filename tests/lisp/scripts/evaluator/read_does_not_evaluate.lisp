(read "(display no)")
(print (type-of (read "nowhere")))
