(filter 1 2)
(loop)
(loop 1)
(hash-table-map 1 2)
