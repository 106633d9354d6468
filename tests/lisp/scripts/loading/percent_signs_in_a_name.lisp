(load "%s%n")
