(define f (closure ((i :integer) (s :string)) -> :string (+ s (to-string i))))
(for-each display (map-with-index f (list "a" "b" "c")))
(print (map-with-index f (list)))
