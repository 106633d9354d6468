;;; text path
;
