	.text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $16, %rsp
.Lmain_B1:
	movsd .LCD0(%rip), %xmm0
	movsd %xmm0, -8(%rbp)
	movsd .LCD1(%rip), %xmm0
