; What an editor's scripts work with: a grid, a selection, and a history of changes.

; ---- grid -----------------------------------------------------------------------------------------------------------

(define grid-size 8)

; The multiple of the grid size nearest to a coordinate, the larger of two.
(define snap (closure ((coordinate :integer)) -> :integer
  (- (+ coordinate (/ grid-size 2)) (modulo (+ coordinate (/ grid-size 2)) grid-size))))

; ---- selection ------------------------------------------------------------------------------------------------------

; The selected things, the last one first.
(define selection (list))

(define selected? (closure ((thing)) -> :boolean (contains? thing selection)))
(define select! (closure ((thing)) -> :nil
  (do (if (selected? thing) :nil (set! selection (cons thing selection))) :nil)))
(define deselect! (closure ((thing)) -> :nil (do (set! selection (list-remove thing selection)) :nil)))
(define deselect-all! (closure () -> :nil (do (set! selection (list)) :nil)))
(define toggle-selection! (closure ((thing)) -> :nil (if (selected? thing) (deselect! thing) (select! thing))))

; ---- history --------------------------------------------------------------------------------------------------------

; A change is a list of two closures without parameters: what makes it and what takes it back.
(define changes (list))
(define changes-undone (list))

; (change! make take-back) makes a change that can be undone.
(define change! (closure ((make :closure) (take-back :closure)) -> :nil
  (do (set! changes (cons (cons make (cons take-back (list))) changes))
      (set! changes-undone (list))
      (make)
      :nil)))

; Takes the last change back, or makes it again. Gives :false when there is none.
(define undo! (closure () -> :boolean
  (if (empty? changes)
      :false
      (do (set! changes-undone (cons (head changes) changes-undone))
          (set! changes (tail changes))
          ((second (head changes-undone)))
          :true))))
(define redo! (closure () -> :boolean
  (if (empty? changes-undone)
      :false
      (do (set! changes (cons (head changes-undone) changes))
          (set! changes-undone (tail changes-undone))
          ((head (head changes)))
          :true))))
