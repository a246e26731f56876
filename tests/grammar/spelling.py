"""How each token of the scanner can be written."""

OPERATORS = {
    "T_PLUS": "+", "T_MINUS": "-", "T_TIMES": "*", "T_DIVIDE": "/",
    "T_LPAREN": "(", "T_RPAREN": ")", "T_LBRACE": "{", "T_RBRACE": "}",
    "T_LBRACKET": "[", "T_RBRACKET": "]", "T_SEMICOLON": ";", "T_COMMA": ",",
    "T_ASSIGN": "=", "T_PLUS_ASSIGN": "+=", "T_MINUS_ASSIGN": "-=",
    "T_INCREMENT": "++", "T_DECREMENT": "--",
    "T_LESS": "<", "T_GREATER": ">", "T_LESS_EQUAL": "<=", "T_GREATER_EQUAL": ">=",
    "T_EQUAL": "==", "T_NOT_EQUAL": "!=", "T_NOT": "!", "T_AND": "&&", "T_OR": "||",
}

KEYWORDS = {
    "T_INT": "int", "T_DOUBLE": "double", "T_BOOLEAN": "boolean", "T_CHARACTER": "character",
    "T_VOID": "void", "T_STRING": "string", "T_IF": "if", "T_ELSE": "else", "T_ELSEIF": "elseif",
    "T_EXIT": "exit", "T_PRINT": "print", "T_TRUE": "true", "T_FALSE": "false", "T_FOR": "for",
    "T_WHILE": "while", "T_CONTINUE": "continue", "T_BREAK": "break", "T_RETURN": "return",
}

OTHERS = {
    "T_INT_LITERAL": "1", "T_ID": "x", "T_STRING_LITERAL": '"s"', "T_CHARACTER_LITERAL": "'c'",
    "T_DECIMAL_LITERAL": "1.5",
}

SPELLING = {**OPERATORS, **KEYWORDS, **OTHERS}
