(print ((closure ())))
(print ((closure ((x)) -> :integer) 5))
