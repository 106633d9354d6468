(print (+ 1 nowhere))
