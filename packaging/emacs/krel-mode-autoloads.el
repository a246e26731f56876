;;; krel-mode-autoloads.el --- What Emacs knows of krel-mode before it is used  -*- lexical-binding: t; no-byte-compile: t -*-
(add-to-list 'load-path (directory-file-name (file-name-directory load-file-name)))
(autoload 'krel-mode "krel-mode" "Programs in Krel." t)
(add-to-list 'auto-mode-alist '("\\.krl\\'" . krel-mode))
;;; krel-mode-autoloads.el ends here
