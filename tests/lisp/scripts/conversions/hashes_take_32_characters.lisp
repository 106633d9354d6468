(print (to-hash "abcdefghijklmnopqrstuvwxyz012345"))
(print (to-hash "abcdefghijklmnopqrstuvwxyz012345 and more"))
(print (= (to-hash "abcdefghijklmnopqrstuvwxyz01234") (to-hash "abcdefghijklmnopqrstuvwxyz012345")))
