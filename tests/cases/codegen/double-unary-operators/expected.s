	.text

	.globl f
	.type f, @function
f:
	pushq %rbp
	movq %rsp, %rbp
	subq $48, %rsp
.Lf_B1:
	movsd %xmm0, -40(%rbp)
	movsd -40(%rbp), %xmm0
	xorpd %xmm1, %xmm1
	subsd %xmm0, %xmm1
	movapd %xmm1, %xmm0
	movsd %xmm0, -8(%rbp)
	movsd -8(%rbp), %xmm0
	movsd %xmm0, -48(%rbp)
	movsd -40(%rbp), %xmm0
	movsd %xmm0, -16(%rbp)
	movsd -16(%rbp), %xmm0
	movsd %xmm0, -48(%rbp)
	movsd -40(%rbp), %xmm0
	movsd %xmm0, -24(%rbp)
	movsd -24(%rbp), %xmm0
	movsd %xmm0, -48(%rbp)
	movsd .LCD0(%rip), %xmm0
	xorpd %xmm1, %xmm1
	subsd %xmm0, %xmm1
	movapd %xmm1, %xmm0
	movsd %xmm0, -32(%rbp)
	movsd -32(%rbp), %xmm0
	movsd %xmm0, -48(%rbp)
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
