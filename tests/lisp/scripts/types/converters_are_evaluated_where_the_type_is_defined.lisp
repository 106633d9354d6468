(define make (closure ((prefix :string))
    (define-type :greeting () ((closure ((type :keyword) (text :string)) (+ prefix text))))))
(make "hello ")
(print (from-string :greeting "you"))
