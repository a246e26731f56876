	.text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $48, %rsp
.Lmain_B1:
	movsd .LCD0(%rip), %xmm0
	movsd %xmm0, -40(%rbp)
	movsd -40(%rbp), %xmm0
	movsd .LCD1(%rip), %xmm1
	addsd %xmm1, %xmm0
	movsd %xmm0, -8(%rbp)
	movsd -8(%rbp), %xmm0
	movsd %xmm0, -48(%rbp)
	movsd -40(%rbp), %xmm0
	movsd -48(%rbp), %xmm1
	subsd %xmm1, %xmm0
	movsd %xmm0, -16(%rbp)
	movsd -16(%rbp), %xmm0
	movsd %xmm0, -48(%rbp)
	movsd .LCD2(%rip), %xmm0
	movsd -40(%rbp), %xmm1
	mulsd %xmm1, %xmm0
	movsd %xmm0, -24(%rbp)
	movsd -24(%rbp), %xmm0
	movsd %xmm0, -48(%rbp)
	movsd -40(%rbp), %xmm0
	movsd .LCD1(%rip), %xmm1
	divsd %xmm1, %xmm0
	movsd %xmm0, -32(%rbp)
	movsd -32(%rbp), %xmm0
	movsd %xmm0, -48(%rbp)
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main

	.section .rodata
.LCD0:
	.double 1.5
.LCD1:
	.double 2.5
.LCD2:
	.double 0.25
	.section .note.GNU-stack,"",@progbits
