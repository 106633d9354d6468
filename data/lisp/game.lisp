; The state of a small game, which the host reads and moves by calling these functions.

; :title, :playing or :over
(define game-state :title)
(define score 0)
(define best-score 0)
(define lives 0)
(define play-time 0)

; Changes the state and emits :game-state with it.
(define enter-state (closure ((state :keyword)) -> :nil
  (do (set! game-state state) (emit :game-state state))))

(define playing? (closure () -> :boolean (= game-state :playing)))

; Begins a game, from any state.
(define start-game (closure () -> :nil
  (do (set! score 0) (set! lives 3) (set! play-time 0) (enter-state :playing))))

; Counts only while playing; gives the score.
(define add-score (closure ((points :integer)) -> :integer
  (do (if (playing?) (set! score (+ score points)) :nil)
      (set! best-score (max score best-score))
      score)))

; Gives the lives that are left. With the last one the game is over.
(define lose-life (closure () -> :integer
  (do (if (playing?) (take-life) :nil) lives)))
(define take-life (closure () -> :nil
  (do (set! lives (- lives 1)) (if (< 0 lives) :nil (enter-state :over)))))

; One line for the host to show.
(define status-line (closure () -> :string
  (text "score " (string-pad 6 "0" (to-string score)) "  best " (string-pad 6 "0" (to-string best-score)) "  lives "
        lives)))

; Time passes only while playing.
(on-event :frame (closure ((elapsed :integer)) (if (playing?) (set! play-time (+ play-time elapsed)) :nil)))
