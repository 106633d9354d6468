(print(+"a""b"))
