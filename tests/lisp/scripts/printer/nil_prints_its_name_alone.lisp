(print :nil)
