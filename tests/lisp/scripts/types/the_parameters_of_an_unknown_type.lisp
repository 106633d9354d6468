(print (type-parameters :nosuch))
(type-parameters :any)
(type-parameters "string")
