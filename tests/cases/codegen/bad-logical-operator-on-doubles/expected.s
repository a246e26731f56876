	.text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $32, %rsp
.Lmain_B1:
	movsd .LCD0(%rip), %xmm0
	movsd %xmm0, -16(%rbp)
	movsd -16(%rbp), %xmm0
	movsd .LCD1(%rip), %xmm1
	ucomisd %xmm1, %xmm0
