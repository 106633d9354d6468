; Events and timers, which run by plain calls: the host calls (frame 16) with the milliseconds since the last frame.
;
; Loading this script again starts over: no handlers, no timers, time 0.

; ---- events ---------------------------------------------------------------------------------------------------------

; From the name of an event, a keyword, to the list of its handlers.
(define event-handlers (hash-table ":keyword" ":list"))

(define handlers-of (closure ((event :keyword)) -> (:list :any)
  (if (hash-table-contains? event-handlers event) (hash-table-get event-handlers event) (list))))

; (on-event :hit f) makes f a handler: a closure with one parameter.
(define on-event (closure ((event :keyword) (handler :closure)) -> :nil
  (do (hash-table-put! event-handlers event (append (handlers-of event) (list handler))) :nil)))

; (forget-event :hit) removes all handlers of an event.
(define forget-event (closure ((event :keyword)) -> :nil
  (do (hash-table-remove! event-handlers event) :nil)))

; (emit :hit value) calls the handlers with the value, in the order in which they came. A handler may emit as well.
(define emit (closure ((event :keyword) (value)) -> :nil (emit-to (handlers-of event) value :nil)))
(define emit-to (closure ((handlers (:list :any)) (value) (ignored)) -> :nil
  (if (empty? handlers) :nil (emit-to (tail handlers) value ((head handlers) value)))))

; ---- timers ---------------------------------------------------------------------------------------------------------

; In milliseconds since this script was loaded.
(define engine-time 0)

; A timer is an array: when it is due, its period (0: it ends after one call), and its function. One that has ended
; has a time that is never reached.
(define timers (list))
(define never 0x7fffffffffffffff)

(define add-timer (closure ((due :integer) (period :integer) (f :closure)) -> :any
  (fill-timer (array 3 ":any") due period f)))
(define fill-timer (closure ((timer (:array :any)) (due :integer) (period :integer) (f :closure)) -> :any
  (do (array-set! timer 0 due)
      (array-set! timer 1 period)
      (array-set! timer 2 f)
      (set! timers (cons timer timers))
      timer)))

; (after 500 f) calls f, which has no parameters, once in half a second. (every 500 f) calls it each half second; a
; period is at least one millisecond. Both give the timer.
(define after (closure ((delay :integer) (f :closure)) (add-timer (+ engine-time delay) 0 f)))
(define every (closure ((period :integer) (f :closure))
  (add-timer (+ engine-time (max period 1)) (max period 1) f)))

; (cancel timer) ends a timer that after or every has given.
(define cancel (closure ((timer (:array :any))) -> :nil (array-set! timer 0 never)))

(define is-timer-running (closure ((timer)) -> :boolean (< (array-get timer 0) never)))

; Sets the next time first, so that the function may cancel its own timer. What was due several times is called once
; for each.
(define run-timer (closure ((timer) (ignored)) -> :nil
  (if (< engine-time (array-get timer 0)) :nil (run-timer timer (call-timer timer)))))
(define call-timer (closure ((timer))
  (do (array-set! timer 0 (if (= (array-get timer 1) 0) never (+ (array-get timer 0) (array-get timer 1))))
      ((array-get timer 2)))))
(define run-timer-of-list (closure ((timer)) (run-timer timer :nil)))

; ---- frames ---------------------------------------------------------------------------------------------------------

(define frame-count 0)

; Runs the timers that are due and emits :frame with the milliseconds. Not to be called by handlers and timers.
(define frame (closure ((elapsed :integer)) -> :nil
  (do (set! engine-time (+ engine-time elapsed))
      (set! frame-count (+ frame-count 1))
      (for-each run-timer-of-list (list-reverse timers))
      (if (all? is-timer-running timers) :nil (set! timers (filter-list is-timer-running timers)))
      (emit :frame elapsed))))
