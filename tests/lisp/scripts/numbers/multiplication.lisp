(print (* 3 4))
(print (* 2 3 -4))
(print (* 1.5 2.0))
