;;; text path
(display "a;b")
