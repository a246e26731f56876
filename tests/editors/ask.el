;;; ask.el --- Asks Emacs about programs in Krel  -*- lexical-binding: t -*-

;; Comes in: the environment's REQUEST, a file with JSON. Goes out: JSON on standard output.

(require 'imenu)
(require 'json)

(let* ((json-array-type 'list)
       (request (json-read-file (getenv "REQUEST")))
       (inhibit-message t))
  (add-to-list 'load-path (alist-get 'folder request))
  (require 'krel-mode)

  (defun face-at (place)
    "The name of the face at PLACE, a line and a column from 1."
    (goto-char (point-min))
    (forward-line (1- (car place)))
    (format "%s" (get-text-property (+ (point) (cadr place) -1) 'face)))

  (defun faces (file places)
    "The faces at the PLACES of a FILE."
    (with-current-buffer (find-file-noselect file)
      (font-lock-ensure)
      (vconcat (mapcar #'face-at places))))

  (defun indented (file)
    "The text of a FILE after all of its lines were indented."
    (with-current-buffer (find-file-noselect file)
      (indent-region (point-min) (point-max))
      (buffer-string)))

  (defun problems (output)
    "Where the messages in OUTPUT lead, as lines and columns from 1."
    (with-temp-buffer
      (insert output)
      (compilation-mode)
      (compilation--ensure-parse (point-max))
      (goto-char (point-min))
      (let ((found nil))
        (while (not (eobp))
          (let ((message (get-text-property (point) 'compilation-message)))
            (when message
              (let ((place (compilation--message->loc message)))
                (push (vector (compilation--loc->line place) (compilation--loc->col place)) found))))
          (forward-line))
        (vconcat (nreverse found)))))

  (princ
   (json-encode
    `((mode . ,(format "%s" (with-current-buffer (find-file-noselect "program.krl") major-mode)))
      (faces . ,(faces "program.krl" (alist-get 'places request)))
      (texts . ,(vconcat (mapcar #'indented (alist-get 'indent request))))
      (functions . ,(with-current-buffer (find-file-noselect "program.krl")
                      (vconcat (mapcar #'car (imenu--make-index-alist t)))))
      (problems . ,(problems (or (alist-get 'output request) "")))))))

;;; ask.el ends here
