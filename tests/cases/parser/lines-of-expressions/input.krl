void main() {
exit
(
(
a
)
+
-
b
*
(
c
)
)
;
}
