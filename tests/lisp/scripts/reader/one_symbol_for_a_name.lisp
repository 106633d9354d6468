(print (= (read "brand-new") (read "brand-new")))
(print (= (read "a") (read "b")))
