	.text

	.globl f
	.type f, @function
f:
	pushq %rbp
	movq %rsp, %rbp
	subq $16, %rsp
.Lf_B1:
	movsd %xmm0, -8(%rbp)
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
	movq $2, %rdi
	call f@PLT
	movq $2, %rax
	movq $3, %rcx
	imulq %rcx, %rax
	movq %rax, -8(%rbp)
	movsd -8(%rbp), %xmm0
	movsd %xmm0, -24(%rbp)
	movq $2, %rax
	negq %rax
	movq %rax, -16(%rbp)
	movsd -16(%rbp), %xmm0
	movsd %xmm0, -32(%rbp)
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main
	.section .note.GNU-stack,"",@progbits
