	.text

	.globl f
	.type f, @function
f:
	pushq %rbp
	movq %rsp, %rbp
	subq $48, %rsp
.Lf_B1:
	movq $1, %rax
	movq %rax, -40(%rbp)
	movq $2, %rax
	movq %rax, -8(%rbp)
	movq $3, %rax
	movq $2, %r11
	leaq -32(%rbp), %r10
	movq %rax, (%r10,%r11,8)
	jmp .Lf_return
.Lf_return:
	leave
	ret
	.size f, .-f

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $48, %rsp
.Lmain_B1:
	movq $1, %rax
	movq %rax, -40(%rbp)
	movq $2, %rax
	movq %rax, -32(%rbp)
	movq $3, %rax
	movq %rax, -24(%rbp)
	movq $4, %rax
	movq %rax, -16(%rbp)
	movq $5, %rax
	movq %rax, -8(%rbp)
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main
	.section .note.GNU-stack,"",@progbits
