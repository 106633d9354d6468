;;; text path
(display "a") ; text
