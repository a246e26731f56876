	.text

	.globl f
	.type f, @function
f:
	pushq %rbp
	movq %rsp, %rbp
	subq $80, %rsp
.Lf_B1:
	movsd %xmm0, -56(%rbp)
	movsd %xmm1, -64(%rbp)
	movsd -56(%rbp), %xmm0
	movsd -64(%rbp), %xmm1
	ucomisd %xmm1, %xmm0
	sete %al
	movzbq %al, %rax
	movq %rax, -8(%rbp)
	movsd -8(%rbp), %xmm0
	movsd %xmm0, -72(%rbp)
	movsd -56(%rbp), %xmm0
	movsd -64(%rbp), %xmm1
	ucomisd %xmm1, %xmm0
	setne %al
	movzbq %al, %rax
	movq %rax, -16(%rbp)
	movsd -16(%rbp), %xmm0
	movsd %xmm0, -72(%rbp)
	movsd -56(%rbp), %xmm0
	movsd -64(%rbp), %xmm1
	ucomisd %xmm1, %xmm0
	setb %al
	movzbq %al, %rax
	movq %rax, -24(%rbp)
	movsd -24(%rbp), %xmm0
	movsd %xmm0, -72(%rbp)
	movsd -56(%rbp), %xmm0
	movsd -64(%rbp), %xmm1
	ucomisd %xmm1, %xmm0
	seta %al
	movzbq %al, %rax
	movq %rax, -32(%rbp)
	movsd -32(%rbp), %xmm0
	movsd %xmm0, -72(%rbp)
	movsd -56(%rbp), %xmm0
	movsd -64(%rbp), %xmm1
	ucomisd %xmm1, %xmm0
	setbe %al
	movzbq %al, %rax
	movq %rax, -40(%rbp)
	movsd -40(%rbp), %xmm0
	movsd %xmm0, -72(%rbp)
	movsd -56(%rbp), %xmm0
	movsd -64(%rbp), %xmm1
	ucomisd %xmm1, %xmm0
	setae %al
	movzbq %al, %rax
	movq %rax, -48(%rbp)
	movsd -48(%rbp), %xmm0
	movsd %xmm0, -72(%rbp)
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
