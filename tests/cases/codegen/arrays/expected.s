	.text

	.globl f
	.type f, @function
f:
	pushq %rbp
	movq %rsp, %rbp
	subq $96, %rsp
.Lf_B1:
	movq %rdi, -88(%rbp)
	movq -88(%rbp), %rax
	movq %rax, -8(%rbp)
	movq -8(%rbp), %rax
	movq $0, %r11
	leaq -64(%rbp), %r10
	movq %rax, (%r10,%r11,8)
	movq $5, %rax
	movq -88(%rbp), %r11
	leaq -64(%rbp), %r10
	movq %rax, (%r10,%r11,8)
	movq -88(%rbp), %r11
	leaq -64(%rbp), %r10
	movq (%r10,%r11,8), %rax
	movq %rax, -16(%rbp)
	movq -16(%rbp), %rax
	movq %rax, -96(%rbp)
	movq $3, %r11
	leaq -64(%rbp), %r10
	movq (%r10,%r11,8), %rax
	movq -88(%rbp), %r11
	leaq -64(%rbp), %r10
	movq (%r10,%r11,8), %rcx
	addq %rcx, %rax
	movq %rax, -24(%rbp)
	movq -24(%rbp), %rax
	movq %rax, -96(%rbp)
	movsd .LCD0(%rip), %xmm0
	movq -88(%rbp), %r11
	leaq -80(%rbp), %r10
	movsd %xmm0, (%r10,%r11,8)
	movq -88(%rbp), %r11
	leaq -80(%rbp), %r10
	movsd (%r10,%r11,8), %xmm0
	movsd %xmm0, -32(%rbp)
	movsd -32(%rbp), %xmm0
	movq $1, %r11
	leaq -80(%rbp), %r10
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
	.double 1.5
	.section .note.GNU-stack,"",@progbits
