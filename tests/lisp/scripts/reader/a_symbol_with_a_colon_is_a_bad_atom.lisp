a:b
