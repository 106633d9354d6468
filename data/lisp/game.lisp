; The rules of the game. The first part keeps score; it needs nothing from outside. The second part is the hunt for the
; embers: what it calls without defining it, such as (thing-distance n), comes from the host.
;
; The host calls (tick) in every frame. Bytes never come back, so nothing in there makes lists or strings, except once a
; second.

; ---- score ----------------------------------------------------------------------------------------------------------

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

; Time passes only while playing. Loading this script again must not add a second handler.
(forget-event :frame)
(on-event :frame (closure ((elapsed :integer)) (if (playing?) (set! play-time (+ play-time elapsed)) :nil)))

; ---- the hunt -------------------------------------------------------------------------------------------------------

; Before night falls, all embers are to be gathered. Watchers float over their rounds with lamps: who stands in the light
; of one for too long loses a life and is back at the start. Shadows are safe, and so is everybody for a moment after
; the start.

(define time-limit 300000)  ; milliseconds
(define patience 1500)      ; how long a watcher looks before it is sure, in milliseconds
(define truce 3000)         ; how long nobody is seen after the start, in milliseconds
(define reach 1.6)          ; metres to an ember
(define deepest 40.0)       ; metres below the start: who gets there fell out of the world
(define most-embers 64)
(define most-watchers 2)

(define ember-count 0)
(define embers-left 0)
(define embers (array 64 ":integer"))   ; the number of each one's thing; -1 when it was taken
(define watchers (array 2 ":integer"))
(define watcher-count 0)
(define hunt-seconds 0.0)
(define seen-time 0)
(define shown-second -1)
(define message-time 0)
(define truce-time 0)

; Begins anew, from any state.
(define begin-hunt (closure () -> :nil
  (do (clear-things)
      (start-game)
      (set! hunt-seconds 0.0)
      (set! seen-time 0)
      (set! shown-second -1)
      (set! ember-count (min (place-count :item) most-embers))
      (set! embers-left ember-count)
      (place-embers 0)
      (set! watcher-count (min (place-count :guard) most-watchers))
      (place-watchers 0)
      (player-to-start)
      (show-score)
      (say (if (= ember-count 0) "There are no embers in this map."
               "Gather the embers before night falls. Stay out of the light!")))))

(define place-embers (closure ((n :integer)) -> :nil
  (if (< n ember-count)
      (do (array-set! embers n (add-thing :ember (place-x :item n) (place-y :item n) (place-z :item n)))
          (place-embers (+ n 1)))
      :nil)))

(define place-watchers (closure ((n :integer)) -> :nil
  (if (< n watcher-count)
      (do (array-set! watchers n (add-thing :watcher (place-x :guard n) (place-y :guard n) (place-z :guard n)))
          (place-watchers (+ n 1)))
      :nil)))

; The first place of its kind, or the middle of the world.
(define player-to-start (closure () -> :nil
  (do (set! truce-time truce)
      (set! seen-time 0)
      (if (< 0 (place-count :start))
          (put-player (place-x :start 0) (place-y :start 0) (place-z :start 0) (place-turn :start 0))
          (put-player 0.0 0.0 1.0 0.0)))))

; ---- every frame ----------------------------------------------------------------------------------------------------

(define tick (closure () -> :nil
  (if (playing?) (hunt-tick (frame-milliseconds)) :nil)))

(define hunt-tick (closure ((elapsed :integer)) -> :nil
  (do (set! play-time (+ play-time elapsed))
      (set! hunt-seconds (+ hunt-seconds (frame-seconds)))
      (forget-message elapsed)
      (move-embers 0)
      (gather 0)
      (move-watchers 0)
      (look-out elapsed)
      (look-down)
      (watch-clock (/ (- time-limit play-time) 1000)))))

; Embers bob up and down, each a little later than the one before.
(define move-embers (closure ((n :integer)) -> :nil
  (if (< n ember-count)
      (do (if (< (array-get embers n) 0) :nil (bob n (array-get embers n)))
          (move-embers (+ n 1)))
      :nil)))
(define bob (closure ((n :integer) (thing :integer)) -> :nil
  (move-thing thing (place-x :item n) (place-y :item n)
              (+ (place-z :item n) 0.9 (* 0.15 (sine (+ (* hunt-seconds 2.0) (place-x :item n))))))))

(define gather (closure ((n :integer)) -> :nil
  (if (< n ember-count)
      (do (if (< (array-get embers n) 0) :nil (gather-if-near n (array-get embers n)))
          (gather (+ n 1)))
      :nil)))
(define gather-if-near (closure ((n :integer) (thing :integer)) -> :nil
  (if (< (thing-distance thing) reach) (take-ember n thing) :nil)))

(define take-ember (closure ((n :integer) (thing :integer)) -> :nil
  (do (play-sound "ember.wav" (place-x :item n) (place-y :item n) (place-z :item n))
      (remove-thing thing)
      (array-set! embers n -1)
      (set! embers-left (- embers-left 1))
      (add-score 100)
      (show-score)
      (if (< 0 embers-left)
          (say (text embers-left (if (= embers-left 1) " ember is left" " embers are left")))
          (win)))))

(define win (closure () -> :nil
  (do (add-score (* 10 (max 0 (/ (- time-limit play-time) 1000))))
      (end-hunt "All embers are safe!"))))

; A watcher goes around its place and looks at the ground ahead.
(define move-watchers (closure ((n :integer)) -> :nil
  (if (< n watcher-count)
      (do (move-watcher n (array-get watchers n) (place-x :guard n) (place-y :guard n) (place-z :guard n)
                        (* (+ hunt-seconds (* 7.0 (if (= n 0) 0.0 1.0))) (if (= n 0) 0.35 -0.28)))
          (move-watchers (+ n 1)))
      :nil)))
(define move-watcher (closure ((n :integer) (thing :integer) (x :float) (y :float) (z :float) (angle :float)) -> :nil
  (do (move-thing thing (+ x (* 6.0 (cosine angle))) (+ y (* 6.0 (sine angle))) z)
      (aim-lamp n (+ x (* 6.0 (cosine angle))) (+ y (* 6.0 (sine angle))) (- z 0.4)
                  (+ x (* 8.0 (cosine (+ angle (if (< n 1) 0.5 -0.5)))))
                  (+ y (* 8.0 (sine (+ angle (if (< n 1) 0.5 -0.5))))) (- z 6.0)))))

(define seen? (closure ((n :integer)) -> :boolean
  (if (< n watcher-count) (if (lamp-sees-player? n) :true (seen? (+ n 1))) :false)))

(define look-out (closure ((elapsed :integer)) -> :nil
  (do (set! truce-time (max 0 (- truce-time elapsed)))
      (if (< 0 truce-time) :nil (if (seen? 0) (be-seen elapsed) (be-unseen elapsed))))))
(define be-unseen (closure ((elapsed :integer)) -> :nil
  (do (set! seen-time (max 0 (- seen-time elapsed))) :nil)))
(define be-seen (closure ((elapsed :integer)) -> :nil
  (do (if (= seen-time 0) (say "You are in the light!") :nil)
      (set! seen-time (+ seen-time elapsed))
      (if (< seen-time patience) :nil (be-caught)))))
(define be-caught (closure () -> :nil
  (do (play-sound "caught.wav" (player-x) (player-y) (player-z))
      (lose-life)
      (show-score)
      (if (playing?)
          (do (player-to-start) (say "Caught! Back to the start."))
          (end-hunt "Caught once too often.")))))

; Maps of one's own have holes and ends.
(define look-down (closure () -> :nil
  (if (< (player-z) (- (if (< 0 (place-count :start)) (place-z :start 0) 0.0) deepest)) (fall-out) :nil)))
(define fall-out (closure () -> :nil
  (do (player-to-start) (say "There is nothing down there. Back to the start."))))

(define watch-clock (closure ((second :integer)) -> :nil
  (if (= second shown-second) :nil (show-clock second))))
(define show-clock (closure ((second :integer)) -> :nil
  (do (set! shown-second second)
      (show-text :clock (text (/ (max second 0) 60) ":" (string-pad 2 "0" (to-string (modulo (max second 0) 60)))))
      (set-dusk (- 1.0 (/ (integer->float (max second 0)) (integer->float (/ time-limit 1000)))))
      (if (< second 1) (end-hunt "Night has fallen.") :nil))))

(define end-hunt (closure ((words :string)) -> :nil
  (do (show-score)
      (show-text :message "")
      (show-text :end (text words "  Score " score ", best " best-score "."))
      (if (playing?) (enter-state :over) :nil))))

; ---- words ----------------------------------------------------------------------------------------------------------

(define say (closure ((words :string)) -> :nil
  (do (set! message-time 4000) (show-text :message words))))
(define forget-message (closure ((elapsed :integer)) -> :nil
  (if (< 0 message-time)
      (do (set! message-time (- message-time elapsed))
          (if (< message-time 1) (show-text :message "") :nil))
      :nil)))
(define show-score (closure () -> :nil
  (show-text :score (text (status-line) "  embers " (- ember-count embers-left) "/" ember-count))))

; ---- loading this script while playing ------------------------------------------------------------------------------

; What loading would forget, as a list, and back.
(define game-snapshot (closure () -> (:list :any)
  (list game-state score best-score lives play-time ember-count embers-left embers watchers watcher-count hunt-seconds
        seen-time shown-second message-time truce-time)))
(define restore-game (closure ((kept (:list :any))) -> :nil
  (do (set! game-state (nth 0 kept))
      (set! score (nth 1 kept))
      (set! best-score (nth 2 kept))
      (set! lives (nth 3 kept))
      (set! play-time (nth 4 kept))
      (set! ember-count (nth 5 kept))
      (set! embers-left (nth 6 kept))
      (set! embers (nth 7 kept))
      (set! watchers (nth 8 kept))
      (set! watcher-count (nth 9 kept))
      (set! hunt-seconds (nth 10 kept))
      (set! seen-time (nth 11 kept))
      (set! shown-second (nth 12 kept))
      (set! message-time (nth 13 kept))
      (set! truce-time (nth 14 kept))
      :nil)))
