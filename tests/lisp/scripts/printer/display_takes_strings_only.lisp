(display 5)
(display :key)
