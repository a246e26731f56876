void main() { int x = 1; int a[1]; int b = 1;
x
=
a
[0
]
||
(
- b
);
x
=
a
[0
]
&&
(
- b
);
x
=
a
[0
]
==
(
- b
);
x
=
a
[0
]
!=
(
- b
);
x
=
a
[0
]
<
(
- b
);
x
=
a
[0
]
>
(
- b
);
x
=
a
[0
]
<=
(
- b
);
x
=
a
[0
]
>=
(
- b
);
x
=
a
[0
]
+
(
- b
);
x
=
a
[0
]
-
(
- b
);
x
=
a
[0
]
*
(
- b
);
x
=
a
[0
]
/
(
- b
);
}
