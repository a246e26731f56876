	.text

	.globl f
	.type f, @function
f:
	pushq %rbp
	movq %rsp, %rbp
	subq $64, %rsp
.Lf_B1:
	movq %rdi, -40(%rbp)
	movq %rsi, -48(%rbp)
	movq -40(%rbp), %rax
	movq $1, %rcx
	testq %rax, %rax
	setne %al
	movzbq %al, %rax
	testq %rcx, %rcx
	setne %cl
	movzbq %cl, %rcx
	andq %rcx, %rax
	movq %rax, -8(%rbp)
	movq -8(%rbp), %rax
	movq %rax, -56(%rbp)
	movq -48(%rbp), %rax
	movq $2, %rcx
	testq %rax, %rax
	setne %al
	movzbq %al, %rax
	testq %rcx, %rcx
	setne %cl
	movzbq %cl, %rcx
	orq %rcx, %rax
	movq %rax, -16(%rbp)
	movq -16(%rbp), %rax
	movq %rax, -64(%rbp)
	movq -40(%rbp), %rax
	testq %rax, %rax
	sete %al
	movzbq %al, %rax
	movq %rax, -24(%rbp)
	movq -24(%rbp), %rax
	movq %rax, -56(%rbp)
	movq -48(%rbp), %rax
	testq %rax, %rax
	sete %al
	movzbq %al, %rax
	movq %rax, -32(%rbp)
	movq -32(%rbp), %rax
	movq %rax, -64(%rbp)
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
