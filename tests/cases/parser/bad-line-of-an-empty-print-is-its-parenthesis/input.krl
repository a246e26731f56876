void main() {
print
(
)
;
}
