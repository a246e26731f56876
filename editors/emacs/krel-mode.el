;;; krel-mode.el --- Programs in Krel  -*- lexical-binding: t -*-

;; Version: 0.1.0
;; Package-Requires: ((emacs "27.1"))
;; Keywords: languages

;; SPDX-License-Identifier: MIT

;;; Commentary:

;; Colours, indentation, compilation and, with eglot, the language server `krel lsp' for programs in
;; Krel.  The command is the value of `krel-command'.
;;
;;     (add-to-list 'load-path "~/krelcc/editors/emacs")
;;     (require 'krel-mode)
;;     (add-hook 'krel-mode-hook #'eglot-ensure)

;;; Code:

(require 'compile)

(defvar eglot-server-programs)

(defgroup krel nil
  "Programs in Krel."
  :group 'languages)

(defcustom krel-command "krel"
  "The command krel: a name on the search path, or the path of the file."
  :type 'string)

(defcustom krel-indent-offset 4
  "How much further to the right a block is than what it belongs to.
`krel fmt' knows only 4."
  :type 'integer
  :safe #'integerp)

;;; Words

(defconst krel-types '("boolean" "character" "double" "int" "string" "void"))
(defconst krel-control '("break" "continue" "else" "elseif" "for" "if" "return" "while"))
(defconst krel-functions '("exit" "print"))
(defconst krel-constants '("false" "true"))

(defconst krel-font-lock-keywords
  (let ((type (regexp-opt krel-types 'symbols))
        (name "\\_<\\([A-Za-z_][A-Za-z_0-9]*\\)\\_>"))
    `((,(regexp-opt krel-control 'symbols) . font-lock-keyword-face)
      (,type . font-lock-type-face)
      (,(regexp-opt krel-functions 'symbols) . font-lock-builtin-face)
      (,(regexp-opt krel-constants 'symbols) . font-lock-constant-face)
      (,(concat type "\\s-+" name "\\s-*(") 2 font-lock-function-name-face)
      (,(concat type "\\s-+" name) 2 font-lock-variable-name-face)
      ("[%?:~^@$`\\]" . font-lock-warning-face)))
  "What is coloured besides comments and texts.")

;;; Comments and texts

(defvar krel-mode-syntax-table
  (let ((table (make-syntax-table)))
    (modify-syntax-entry ?# "<" table)
    (modify-syntax-entry ?\n ">" table)
    (modify-syntax-entry ?\" "\"" table)
    (modify-syntax-entry ?\' "\"" table)
    (modify-syntax-entry ?\\ "\\" table)
    (modify-syntax-entry ?_ "_" table)
    (dolist (operator (string-to-list "+-*/=<>!&|%"))
      (modify-syntax-entry operator "." table))
    table)
  "The syntax of characters, where nothing before them says otherwise.")

(defun krel--mark (position syntax)
  "Give the character at POSITION the SYNTAX."
  (put-text-property position (1+ position) 'syntax-table (string-to-syntax syntax)))

(defun krel--pass-block (limit)
  "Move behind the end of the block comment that point is in.
Return nil, and stay, if there is none before LIMIT.  A brace and what
is behind it are read together: two braces and # do not end the block."
  (let ((start (point))
        (found nil))
    (while (and (not found) (search-forward "}" limit t) (< (point) limit))
      (setq found (eq (char-after) ?#))
      (forward-char))
    (unless found
      (goto-char start))
    found))

(defun krel--pass-text ()
  "Move behind the text whose first quote is before point.
Return nil, and stay, if it is not closed on its line."
  (let ((start (point)))
    (while (progn (skip-chars-forward "^\"\\\\\n")
                  (and (eq (char-after) ?\\) (not (memq (char-after (1+ (point))) '(nil ?\n)))))
      (forward-char 2))
    (if (eq (char-after) ?\")
        (progn (forward-char) t)
      (goto-char start)
      nil)))

(defun krel--propertize-comment (end)
  "Mark the block comment whose # is before point, if there is one.
Go behind the comment, at most to END."
  (let ((start (1- (point))))
    (if (or (not (eq (char-after) ?\{))
            (save-excursion (forward-char) (krel--pass-block (line-end-position)))
            (save-excursion (forward-char) (not (krel--pass-block (point-max)))))
        (goto-char (min end (line-end-position)))
      (krel--mark start "!")
      (forward-char)
      (krel--propertize-block-end end))))

(defun krel--propertize-block-end (end)
  "Mark the end of the block comment that point is in, if it is before END."
  (if (krel--pass-block end)
      (krel--mark (1- (point)) "!")
    (goto-char end)))

(defun krel-syntax-propertize (start end)
  "Mark between START and END what is no text, and where block comments are."
  (goto-char start)
  (when (eq (nth 7 (syntax-ppss)) 'syntax-table)
    (skip-chars-backward "}")
    (krel--propertize-block-end end))
  (while (re-search-forward "[\"'#]" end t)
    (pcase (char-before)
      (?# (krel--propertize-comment end))
      (?\" (unless (krel--pass-text)
             (krel--mark (1- (point)) ".")))
      (?\' (if (looking-at "\\(?:[^'\\\n]\\|\\\\.\\)?'")
               (goto-char (match-end 0))
             (krel--mark (1- (point)) "."))))))

;;; Indentation

(defun krel--back-to-code ()
  "Move back over blanks and comments."
  (forward-comment (- (point))))

(defun krel--opens-block-p (open)
  "Whether the bracket at OPEN begins a block, and not a list."
  (and (eq (char-after open) ?\{)
       (save-excursion
         (goto-char open)
         (krel--back-to-code)
         (not (eq (char-before) ?=)))))

(defun krel--head-indentation (open)
  "The indentation of what the block at OPEN belongs to."
  (save-excursion
    (goto-char open)
    (let ((line (point)))
      (krel--back-to-code)
      (if (eq (char-before) ?\))
          (backward-list)
        (goto-char line)))
    (current-indentation)))

(defun krel--indentation-in-list (open closes)
  "The indentation of a line within the list that the bracket at OPEN begins.
CLOSES says that the line begins with a closing bracket."
  (save-excursion
    (goto-char open)
    (cond (closes (current-indentation))
          ((looking-at ".\\s-*\\(?:#.*\\)?$") (+ (current-indentation) krel-indent-offset))
          (t (1+ (current-column))))))

(defun krel--indentation-in-block (open first)
  "The indentation of a line that begins with the character FIRST.
It is within the block at OPEN, or outside of all if that is nil."
  (let ((outer (if open (krel--head-indentation open) 0)))
    (if (eq first ?\})
        outer
      (let ((inner (if open (+ outer krel-indent-offset) 0)))
        (save-excursion
          (krel--back-to-code)
          (if (or (memq (char-before) '(nil ?\; ?\{ ?\})) (memq first '(?\{ ?#)))
              inner
            (+ inner krel-indent-offset)))))))

(defun krel--continues-comment-p ()
  "Whether the line is a comment in the column of one behind code above it."
  (and (looking-at "#")
       (let ((column (current-column)))
         (save-excursion
           (and (zerop (forward-line -1))
                (= (move-to-column column) column)
                (looking-at "#")
                (> column (current-indentation))
                (not (nth 4 (syntax-ppss))))))))

(defun krel--indentation ()
  "The indentation of the line whose first character is at point.
It is nil when the line stays as it is."
  (let* ((state (save-excursion (syntax-ppss (line-beginning-position))))
         (open (nth 1 state))
         (first (char-after)))
    (cond ((nth 4 state) nil)
          ((krel--continues-comment-p) nil)
          ((or (null open) (krel--opens-block-p open)) (krel--indentation-in-block open first))
          (t (krel--indentation-in-list open (memq first '(?\) ?\] ?\})))))))

(defun krel-indent-line ()
  "Indent the line as `krel fmt' does."
  (interactive)
  (let ((indentation (save-excursion (back-to-indentation) (krel--indentation))))
    (cond ((null indentation) 'noindent)
          ((<= (current-column) (current-indentation)) (indent-line-to indentation))
          (t (save-excursion (indent-line-to indentation))))))

;;; Running and checking

(add-to-list 'compilation-error-regexp-alist-alist
             '(krelcc "^\\(?:Lexer\\|Syntax\\|Semantic\\) error in \\(.+\\) at line \\([0-9]+\\): "
                      1 2))
(add-to-list 'compilation-error-regexp-alist 'krelcc)

(defun krel--command-line (command)
  "The command line for krel to do COMMAND with the file."
  (mapconcat #'shell-quote-argument
             (list krel-command command (file-name-nondirectory (buffer-file-name)))
             " "))

(defun krel-run-file ()
  "Run the program, and show what it prints or what is wrong with it."
  (interactive)
  (save-buffer)
  (compile (krel--command-line "run")))

(defun krel-check-file ()
  "List the findings of `krel check' in the program."
  (interactive)
  (save-buffer)
  (compile (krel--command-line "check")))

;;; The mode

(defvar krel-mode-map
  (let ((map (make-sparse-keymap)))
    (define-key map (kbd "C-c C-c") #'krel-run-file)
    (define-key map (kbd "C-c C-k") #'krel-check-file)
    map)
  "The keys of programs in Krel.")

(defvar krel-imenu-generic-expression
  `((nil ,(concat "^" (regexp-opt krel-types) "\\s-+\\([A-Za-z_][A-Za-z_0-9]*\\)\\s-*(") 1))
  "What is listed as functions.")

;;;###autoload
(define-derived-mode krel-mode prog-mode "Krel"
  "Programs in Krel."
  (setq-local font-lock-defaults '(krel-font-lock-keywords))
  (setq-local syntax-propertize-function #'krel-syntax-propertize)
  (setq-local parse-sexp-ignore-comments t)
  (setq-local comment-start "# ")
  (setq-local comment-end "")
  (setq-local comment-start-skip "#+\\s-*")
  (setq-local indent-line-function #'krel-indent-line)
  (setq-local indent-tabs-mode nil)
  (setq-local electric-indent-chars (append "})]" electric-indent-chars))
  (setq-local imenu-generic-expression krel-imenu-generic-expression)
  (when (buffer-file-name)
    (setq-local compile-command (krel--command-line "check"))))

;;;###autoload
(add-to-list 'auto-mode-alist '("\\.krl\\'" . krel-mode))

(with-eval-after-load 'eglot
  (add-to-list 'eglot-server-programs
               (cons 'krel-mode (lambda (&rest _) (list krel-command "lsp")))))

(provide 'krel-mode)
;;; krel-mode.el ends here
