

int
f
(
double
a
,
boolean
b
)
{
}
void
main
(
)
{
}
