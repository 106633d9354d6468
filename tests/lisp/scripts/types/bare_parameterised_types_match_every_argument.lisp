(define f (closure ((xs :list) (t :hash-table) (a :array) (c :closure)) (list-size xs)))
(print (f (list 1 2) (hash-table ":string" ":float") (array 1 ":byte") print))
(print (f '(1) (hash-table ":any" ":any") (array 1 ":any") (closure () 1)))
