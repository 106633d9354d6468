(print (closure ((x :integer :rest)) x))
