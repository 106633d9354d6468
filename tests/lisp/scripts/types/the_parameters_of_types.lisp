(for-each print (type-parameters :hash-table))
(for-each print (type-parameters :list))
(for-each print (type-parameters :array))
(print (type-parameters :integer))
