(print nowhere)
nowhere
