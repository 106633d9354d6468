(head 1)
