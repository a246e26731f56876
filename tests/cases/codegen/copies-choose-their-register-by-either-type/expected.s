	.text

	.globl f
	.type f, @function
f:
	pushq %rbp
	movq %rsp, %rbp
	subq $48, %rsp
.Lf_B1:
	movq %rdi, -48(%rbp)
	movsd .LCD0(%rip), %xmm0
	movsd %xmm0, -24(%rbp)
	movsd -24(%rbp), %xmm0
	movsd %xmm0, -8(%rbp)
	movsd -8(%rbp), %xmm0
	movq $0, %r11
	leaq -40(%rbp), %r10
	movsd %xmm0, (%r10,%r11,8)
	movq $3, %rax
	movq $1, %r11
	leaq -40(%rbp), %r10
	movq %rax, (%r10,%r11,8)
	movsd .LCD1(%rip), %xmm0
	movsd %xmm0, -24(%rbp)
	movq $3, %rax
	movq %rax, -48(%rbp)
	movq -48(%rbp), %rax
	movq %rax, -16(%rbp)
	movq -16(%rbp), %rax
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
.LCD1:
	.double 2.5
	.section .note.GNU-stack,"",@progbits
