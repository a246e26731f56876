	.text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $16, %rsp
.Lmain_B1:
	movq $1, %rdi
	movq $1, %rsi
	movq $99, %rdx
	leaq .LC0(%rip), %rcx
	movq $5, %r8
	movq $6, %r9
