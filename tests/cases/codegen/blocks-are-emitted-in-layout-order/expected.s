	.text

	.globl f
	.type f, @function
f:
	pushq %rbp
	movq %rsp, %rbp
	subq $16, %rsp
.Lf_B1:
	movq %rdi, -16(%rbp)
	movq -16(%rbp), %rax
	movq $1, %rcx
	cmpq %rcx, %rax
	setne %al
	movzbq %al, %rax
	movq %rax, -8(%rbp)
	movq -8(%rbp), %rax
	testq %rax, %rax
	jne .Lf_B4
.Lf_B3:
	movq $2, %rax
	movq %rax, -16(%rbp)
	jmp .Lf_B2
.Lf_B4:
	movq $3, %rax
	movq %rax, -16(%rbp)
.Lf_B2:
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
