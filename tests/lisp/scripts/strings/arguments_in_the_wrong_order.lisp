(string-take "abc" 1)
(string-drop "abc" 1)
(string-reverse 1)
(string-take 1)
