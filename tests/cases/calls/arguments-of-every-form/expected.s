	.text

	.globl f
	.type f, @function
f:
	pushq %rbp
	movq %rsp, %rbp
	subq $48, %rsp
.Lf_B1:
	movq %rdi, -16(%rbp)
	movq %rsi, -24(%rbp)
	movq %rdx, -32(%rbp)
	movq %rcx, -40(%rbp)
	movsd %xmm0, -48(%rbp)
	movq -16(%rbp), %rax
	movq %rax, -8(%rbp)
	movq -8(%rbp), %rax
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
	movsd .LCD0(%rip), %xmm0
	movsd %xmm0, -32(%rbp)
	movq $0, %r11
	leaq -24(%rbp), %r10
	movq (%r10,%r11,8), %rdi
	movq $120, %rsi
	movq $1, %rdx
	leaq .LC0(%rip), %rcx
	movsd -32(%rbp), %xmm0
	call f@PLT
	movq %rax, -8(%rbp)
	movq -8(%rbp), %rax
	movq %rax, -40(%rbp)
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main

	.section .rodata
.LC0:
	.string "s"
.LCD0:
	.double 0.5
	.section .note.GNU-stack,"",@progbits
