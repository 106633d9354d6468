a#b
