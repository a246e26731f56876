	.text

	.globl f
	.type f, @function
f:
	pushq %rbp
	movq %rsp, %rbp
	subq $48, %rsp
.Lf_B1:
	movq %rdi, -32(%rbp)
	movq -32(%rbp), %rax
	movq %rax, -8(%rbp)
	movq -8(%rbp), %rax
	movq %rax, -40(%rbp)
	movq -40(%rbp), %rax
	movq -40(%rbp), %rcx
	addq %rcx, %rax
	movq %rax, -16(%rbp)
	movq -16(%rbp), %rax
	movq %rax, -40(%rbp)
	movq -32(%rbp), %rdi
	movq -40(%rbp), %rsi
	call krel_concat@PLT
	movq %rax, -24(%rbp)
	movq -24(%rbp), %rax
	movq %rax, -40(%rbp)
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
.Lmain_B1:
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main
	.section .note.GNU-stack,"",@progbits
