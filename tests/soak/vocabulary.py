"""What names and literals of model programs are made of."""

WORDS = """a b c d e f g h i j k m n o p q r s t u v w x y z alpha beta count total sum index left
right value item speed mass flag done next last best low high width depth ratio scale _ __ _t _tx t0
B Bx b1 B1x integer format returned iff elif args call1 gotoB params printer exits doubles char bool
float rax xmm0 krel_print""".split()
FUNCTION_WORDS = """area mix fold blend step scan probe shift merge turn walk pick tally weigh join
rank trim spin""".split()

LITERAL_PIECES = """a b c x y z ok no up Krel lorem ipsum dolor 0 7 42 3.5 , . : ; ! ? ( ) [ ] { }
< > = + - * / & | % $ @ ^ ~ _ # #{ }# // /* */ \\n \\t \\r \\\\ \\" ' \\' \\q \\b \\f n t r if goto
B1 arg return call true \xe9 \xc3\xa9 \xff \x01""".split() + [" "] * 14
CHARACTER_SPELLINGS = (list("aAbzZ019nrt +-*/<>=!&|_#{}[]();,.~") + ["\\n"] * 3 + ["\\\\"] * 4
                       + ["\\t", "\\r", "\\'", "\\q", "\\b", "\\0", "", "\xe9", "\xff",
                          "\t"])
