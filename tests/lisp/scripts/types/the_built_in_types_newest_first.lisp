(define names (type-list))
(print names)
(for-each print names)
