(print (hash-table ":string" ":integer"))
(print (macro (x) (list ,x)))
