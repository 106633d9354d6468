:a_b
