; Commands for the editor's console, made of what the editor itself offers: (add-box x y z X Y Z "brick.png"),
; (move-brush n x y z), (add-object "lamp" x y z), (raise-terrain x y radius amount) and so on. All lengths are floats.

; (slab 0.0 0.0 0.0 6.0 4.0 "paving.png") is a floor with its corner there, a quarter of a metre thick.
(define slab (closure ((x :float) (y :float) (z :float) (width :float) (depth :float) (texture :string)) -> :integer
  (add-box x y (- z 0.25) (+ x width) (+ y depth) z texture)))

; (wall 0.0 0.0 0.0 6.0 3.0 "brick.png") goes along x, (wall-along-y ...) along y; both are 0.4 thick.
(define wall (closure ((x :float) (y :float) (z :float) (width :float) (height :float) (texture :string)) -> :integer
  (add-box x y z (+ x width) (+ y 0.4) (+ z height) texture)))
(define wall-along-y (closure ((x :float) (y :float) (z :float) (depth :float) (height :float) (texture :string)) -> :integer
  (add-box x y z (+ x 0.4) (+ y depth) (+ z height) texture)))

; (room 0.0 0.0 0.0 8.0 6.0 3.0 "brick.png") has a floor and four walls, and a door 1.6 wide in the front one.
(define room (closure ((x :float) (y :float) (z :float) (width :float) (depth :float) (height :float) (texture :string)) -> :nil
  (do (slab x y z width depth "paving.png")
      (wall x y z (- (/ width 2.0) 0.8) height texture)
      (wall (+ x (/ width 2.0) 0.8) y z (- (/ width 2.0) 0.8) height texture)
      (add-box (- (+ x (/ width 2.0)) 0.8) y (+ z 2.2) (+ x (/ width 2.0) 0.8) (+ y 0.4) (+ z height) texture)
      (wall x (- (+ y depth) 0.4) z width height texture)
      (wall-along-y x (+ y 0.4) z (- depth 0.8) height texture)
      (wall-along-y (- (+ x width) 0.4) (+ y 0.4) z (- depth 0.8) height texture)
      :nil)))

; (stairs 0.0 0.0 0.0 10 "limestone.png") goes up along y, 0.3 a step and 1.5 wide.
(define stairs (closure ((x :float) (y :float) (z :float) (steps :integer) (texture :string)) -> :nil
  (if (< steps 1)
      :nil
      (do (add-box x y z (+ x 1.5) (+ y 0.3) (+ z 0.3) texture)
          (stairs x (+ y 0.3) (+ z 0.3) (- steps 1) texture)))))

; (row-of-lamps 0.0 0.0 2.5 4.0 5) hangs lamps along x, so far apart.
(define row-of-lamps (closure ((x :float) (y :float) (z :float) (distance :float) (count :integer)) -> :nil
  (if (< count 1)
      :nil
      (do (add-object "lamp" x y z)
          (row-of-lamps (+ x distance) y z distance (- count 1))))))

; ---- several brushes at once ----------------------------------------------------------------------------------------

; The list `selection` of editor.lisp holds numbers of brushes here: (keep) adds the one that is selected in the
; picture, (keep-range 3 7) those from 3 to 7, and the commands below are for all of them.
(define keep (closure () -> :integer
  (do (if (< (selected-brush) 0) :nil (select! (selected-brush))) (list-size selection))))
(define keep-range (closure ((first :integer) (last :integer)) -> :integer
  (if (or (> first last) (>= first (brush-count)))
      (list-size selection)
      (do (select! first) (keep-range (+ first 1) last)))))

(define move-kept (closure ((x :float) (y :float) (z :float)) -> :nil (move-each selection x y z)))
(define move-each (closure ((brushes (:list :any)) (x :float) (y :float) (z :float)) -> :nil
  (if (empty? brushes)
      :nil
      (do (move-brush (head brushes) x y z) (move-each (tail brushes) x y z)))))

; The copies are kept in place of the brushes.
(define copy-kept (closure ((x :float) (y :float) (z :float)) -> :nil (copy-instead selection x y z)))
(define copy-instead (closure ((brushes (:list :any)) (x :float) (y :float) (z :float)) -> :nil
  (do (deselect-all!) (copy-each brushes x y z))))
(define copy-each (closure ((brushes (:list :any)) (x :float) (y :float) (z :float)) -> :nil
  (if (empty? brushes)
      :nil
      (do (select! (copy-brush (head brushes) x y z)) (copy-each (tail brushes) x y z)))))

(define texture-kept (closure ((texture :string)) -> :nil (texture-each selection texture)))
(define texture-each (closure ((brushes (:list :any)) (texture :string)) -> :nil
  (if (empty? brushes)
      :nil
      (do (texture-brush (head brushes) texture) (texture-each (tail brushes) texture)))))

; The last one first: the numbers of those behind it change.
(define remove-kept (closure () -> :nil
  (if (empty? selection) :nil (do (remove-one (fold max (head selection) (tail selection))) (remove-kept)))))
(define remove-one (closure ((brush :integer)) -> :nil (do (remove-brush brush) (deselect! brush))))
