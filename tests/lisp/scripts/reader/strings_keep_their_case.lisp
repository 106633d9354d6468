(display "Foo BAR")
