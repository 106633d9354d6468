(define s (closure ((x (:list (:list (:list (:list (:list (:list (:list (:list :integer)))))))))) x))
(print s)
(print (closure ((x (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list (:list :integer)))))))))))))))))))))))))))))))))))))))))) x))
