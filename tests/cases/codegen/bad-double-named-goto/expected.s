	.text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
.Lmain_B1:
	movsd .LCD0(%rip), %xmm0
