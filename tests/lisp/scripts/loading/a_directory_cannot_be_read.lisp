(print (load "folder"))
;;; directory base/folder.lisp
