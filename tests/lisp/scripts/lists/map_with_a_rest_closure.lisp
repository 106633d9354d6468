(define f (closure ((all :rest)) (list-size all)))
(print (head (map f (list 5))))
