(define when if)
(define block do)
(print (when :true (block 1 2) (display "no")))
