(system-info)
(print (system-info))
(system-info 1)
