;;; full region only
(define double (closure ((s :string)) (double (+ s s))))
(double "0123456789abcdef")
(display "behind")
