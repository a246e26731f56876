	.text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $48, %rsp
.Lmain_B1:
	movq $5, %rax
	movq %rax, -48(%rbp)
	movq $1, %rax
	movq %rax, -24(%rbp)
	xorq %rax, %rax
	movq %rax, -24(%rbp)
	movq $2147483648, %rax
	negq %rax
	movq %rax, -48(%rbp)
	movq -48(%rbp), %rax
	movq $-2147483648, %rcx
	addq %rcx, %rax
	movq %rax, -8(%rbp)
	movq -8(%rbp), %rax
	movq %rax, -48(%rbp)
	movq $-2147483648, %r11
	leaq -40(%rbp), %r10
	movq (%r10,%r11,8), %rax
	movq %rax, -16(%rbp)
	movq -16(%rbp), %rax
	movq %rax, -48(%rbp)
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main
	.section .note.GNU-stack,"",@progbits
