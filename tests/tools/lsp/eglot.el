;;; eglot.el --- Drives krel lsp by Emacs' eglot  -*- lexical-binding: t -*-

;; Comes in: the environment's KREL, MODE, the folder of krel-mode.el, and PROGRAM, a file with a
;; variable that has no value. Goes out: a JSON object on standard output, what Emacs has seen.

(require 'package)
(package-initialize)
(require 'eglot)
(require 'json)

(add-to-list 'load-path (getenv "MODE"))
(require 'krel-mode)
(setq krel-command (getenv "KREL"))

(defvar seen nil "What goes out: an alist.")

(defun note (name value)
  "Remember VALUE under NAME."
  (push (cons name value) seen))

(defun wait-for (count)
  "Wait until Flymake shows COUNT diagnostics.
Nobody is idle in batch mode, so what waits for that is done here."
  (let ((end (time-add (current-time) 60)))
    (eglot--signal-textDocument/didChange)
    (flymake-start)
    (while (and (/= (length (flymake-diagnostics)) count) (time-less-p (current-time) end))
      (accept-process-output nil 0.02))
    (unless (= (length (flymake-diagnostics)) count)
      (error "Waited in vain for %d diagnostics" count))))

(defun places ()
  "Where the diagnostics are, as texts of the buffer."
  (vconcat (mapcar (lambda (diagnostic)
                     (buffer-substring-no-properties (flymake-diagnostic-beg diagnostic)
                                                     (flymake-diagnostic-end diagnostic)))
                   (flymake-diagnostics))))

(defun text ()
  "The text of the buffer."
  (buffer-substring-no-properties (point-min) (point-max)))

(defun go-to (text)
  "Go to where TEXT begins."
  (goto-char (point-min))
  (search-forward text)
  (goto-char (match-beginning 0)))

(defun run ()
  "Play the session."
  (find-file (getenv "PROGRAM"))
  (note 'mode major-mode)
  (apply #'eglot (eglot--guess-contact))
  (wait-for 1)
  (note 'diagnostics (places))
  (let* ((diagnostic (car (flymake-diagnostics)))
         (actions (jsonrpc-request
                   (eglot--current-server-or-lose) :textDocument/codeAction
                   (list :textDocument (eglot--TextDocumentIdentifier)
                         :range (list :start (eglot--pos-to-lsp-position
                                              (flymake-diagnostic-beg diagnostic))
                                      :end (eglot--pos-to-lsp-position
                                            (flymake-diagnostic-end diagnostic)))
                         :context '(:diagnostics [] :only ["quickfix"])))))
    (note 'title (plist-get (aref actions 0) :title))
    (eglot--apply-workspace-edit (plist-get (aref actions 0) :edit)))
  (wait-for 0)
  (note 'repaired (text))
  (go-to "print")
  (insert "print(\"größe 😀\", y); ")
  (wait-for 1)
  (note 'edited (places))
  (go-to "print")
  (delete-char (length "print(\"größe 😀\", y); "))
  (wait-for 0)
  (go-to "x = 0")
  (eglot-rename "count")
  (note 'renamed (text))
  (go-to "}")
  (insert "  count ++ ;\n")
  (eglot-format-buffer)
  (note 'formatted (text))
  (eglot-shutdown (eglot--current-server-or-lose)))

(condition-case fault
    (run)
  (error (note 'fault (error-message-string fault))))
(set-buffer-modified-p nil)
(princ (json-encode seen))

;;; eglot.el ends here
