(print (bit-get 64 -1))
(print (bit-get -1 -1))
(print (bit-set 64 5))
(print (bit-set -1 5))
