	.text

	.globl number
	.type number, @function
number:
	pushq %rbp
	movq %rsp, %rbp
.Lnumber_B1:
	movq $1, %rax
	jmp .Lnumber_return
.Lnumber_return:
	leave
	ret
	.size number, .-number

	.globl f
	.type f, @function
f:
	pushq %rbp
	movq %rsp, %rbp
	subq $112, %rsp
.Lf_B1:
	movq %rdi, -72(%rbp)
	movq %rsi, -56(%rbp)
	movsd .LCD0(%rip), %xmm0
	movsd %xmm0, -8(%rbp)
	movsd .LCD0(%rip), %xmm0
	movsd %xmm0, -16(%rbp)
	movsd .LCD0(%rip), %xmm0
	movsd %xmm0, -24(%rbp)
	movsd .LCD0(%rip), %xmm0
	movsd %xmm0, -32(%rbp)
	movsd .LCD0(%rip), %xmm0
	movsd %xmm0, -40(%rbp)
	movq -72(%rbp), %rax
	movq $2, %rcx
	cmpq %rcx, %rax
	setl %al
	movzbq %al, %rax
	movq %rax, -8(%rbp)
	movq -8(%rbp), %rax
	movq %rax, -88(%rbp)
	movq $1, %rax
	testq %rax, %rax
	sete %al
	movzbq %al, %rax
	movq %rax, -16(%rbp)
	movq -16(%rbp), %rax
	movq %rax, -48(%rbp)
	movq -72(%rbp), %rdi
	movq %rdi, -24(%rbp)
	movq -24(%rbp), %rax
	movq %rax, -64(%rbp)
	movq -56(%rbp), %rdi
	movq %rdi, -32(%rbp)
	movq -32(%rbp), %rax
	movq %rax, -96(%rbp)
	call number@PLT
	movq %rax, -40(%rbp)
	movq -40(%rbp), %rax
	movq %rax, -104(%rbp)
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

	.section .rodata
.LCD0:
	.double 0.5
	.section .note.GNU-stack,"",@progbits
