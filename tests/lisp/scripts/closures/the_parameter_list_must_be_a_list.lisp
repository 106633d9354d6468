(closure 5 1)
(closure)
