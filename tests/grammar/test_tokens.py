#!/usr/bin/env python3
"""How the scanner reads each token, seen by the name under which the parser refuses it."""

import unittest

from diagnostics import diagnostics, syntax_error
from spelling import KEYWORDS, OPERATORS, SPELLING


class Tokens(unittest.TestCase):
    def assert_refused(self, texts):
        """Each text, a dictionary's key, is read as the token that the dictionary gives for it."""
        # Behind `if` only an opening parenthesis may stand, behind `int` only a name.
        places = [("int", "T_ID") if token == "T_LPAREN" else ("if", "T_LPAREN")
                  for token in texts.values()]
        sources = [f"{start}\n{text}" for (start, _), text in zip(places, texts)]
        for (text, token), (_, wanted), actual in zip(texts.items(), places, diagnostics(sources)):
            with self.subTest(text=text):
                error = f"syntax error, unexpected {token}, expecting {wanted}"
                self.assertEqual(actual, (1, [syntax_error(2, error)]))

    def test_every_token(self):
        self.assert_refused({text: token for token, text in SPELLING.items()})

    def test_words_that_only_resemble_keywords_are_names(self):
        words = [changed for word in KEYWORDS.values()
                 for changed in (word + "s", word + "_", word + "1", "_" + word, word[:-1],
                                 word.upper(), word.capitalize())]
        self.assert_refused({word: "T_ID" for word in words if word not in KEYWORDS.values()})

    def test_longest_operator_wins(self):
        texts = {}
        for token, text in OPERATORS.items():
            for following in "+-*/()[];,=<>!":
                # What follows joins the operator when that makes a longer one.
                longer = [name for name, spelling in OPERATORS.items()
                          if spelling == text + following]
                texts[text + following] = longer[0] if longer else token
        self.assert_refused(texts)

    def test_nothing_need_separate_a_token_from_the_next(self):
        self.assert_refused({text + "(": token for token, text in SPELLING.items()})


if __name__ == "__main__":
    unittest.main()
