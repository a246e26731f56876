	.text

	.globl f
	.type f, @function
f:
	pushq %rbp
	movq %rsp, %rbp
	subq $64, %rsp
.Lf_B1:
	movq %rdi, -40(%rbp)
	movsd .LCD0(%rip), %xmm0
	movsd %xmm0, -8(%rbp)
	movsd .LCD0(%rip), %xmm0
	movsd %xmm0, -16(%rbp)
	movsd .LCD0(%rip), %xmm0
	movsd %xmm0, -24(%rbp)
	movq -40(%rbp), %rax
	movq $2, %rcx
	addq %rcx, %rax
	movq %rax, -8(%rbp)
	movsd -8(%rbp), %xmm0
	movsd %xmm0, -56(%rbp)
	movq -40(%rbp), %rax
	negq %rax
	movq %rax, -16(%rbp)
	movsd -16(%rbp), %xmm0
	movsd %xmm0, -64(%rbp)
	movq -40(%rbp), %rdi
	call abs@PLT
	movq %rax, -24(%rbp)
	movsd -24(%rbp), %xmm0
	movq $0, %r11
	leaq -48(%rbp), %r10
	movsd %xmm0, (%r10,%r11,8)
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
