(print '5)
(print '"text")
(print ':key)
(print '2.5)
