	.text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $16, %rsp
.Lmain_B1:
	movsd .LCD0(%rip), %xmm0
	movsd .LCD0(%rip), %xmm1
	movsd .LCD0(%rip), %xmm2
	movsd .LCD0(%rip), %xmm3
	movsd .LCD0(%rip), %xmm4
	movsd .LCD0(%rip), %xmm5
	movsd .LCD0(%rip), %xmm6
	movsd .LCD0(%rip), %xmm7
