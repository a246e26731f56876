	.text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $16, %rsp
.Lmain_B1:
	movsd .LCD0(%rip), %xmm0
	movsd %xmm0, -16(%rbp)
