; nothing
; at all
