(display "plain text")
(display "")
(display "100% %s %d")
