; The shape of the land around the courtyard, in metres: the game asks (ground-height x y) for each point of its terrain,
; and rounds off what comes out. From the game come (sine radians) and (square-root x).

; The flat part: the courtyard, the gatehouse to its north and the path to its south.
(define flat-west -24.0)
(define flat-east 24.0)
(define flat-south -54.0)
(define flat-north 42.0)

; How far a coordinate lies outside of a range.
(define beyond (closure ((x :float) (low :float) (high :float)) -> :float (max 0.0 (max (- low x) (- x high)))))

; From 0 to 1 between two points, with soft ends.
(define ease (closure ((part :float)) -> :float (* part part (- 3.0 (* 2.0 part)))))
(define rise (closure ((x :float) (from :float) (to :float)) -> :float (ease (clamp (/ (- x from) (- to from)) 0.0 1.0))))

; Long hills with shorter ones on their backs, always above 0.
(define hills (closure ((x :float) (y :float)) -> :float
  (+ 13.0
     (* 7.0 (sine (+ (* x 0.041) 0.8)) (sine (+ (* y 0.037) 0.5)))
     (* 3.0 (sine (+ (* x 0.083) (* y 0.061))))
     (* 1.6 (sine (- (* x 0.17) (* y 0.13)))))))

; A meadow is never quite even.
(define meadow (closure ((x :float) (y :float)) -> :float
  (* 0.35 (+ 1.0 (* (sine (* x 0.31)) (sine (* y 0.27)))))))

(define distance-from-flat (closure ((x :float) (y :float)) -> :float
  (length-of (beyond x flat-west flat-east) (beyond y flat-south flat-north))))
(define length-of (closure ((x :float) (y :float)) -> :float (square-root (+ (* x x) (* y y)))))

(define ground-height (closure ((x :float) (y :float)) -> :float
  (+ (* (rise (distance-from-flat x y) 4.0 60.0) (hills x y))
     (* (rise (distance-from-flat x y) 0.0 20.0) (meadow x y)))))
