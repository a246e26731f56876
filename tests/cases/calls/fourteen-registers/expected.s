	.text

	.globl f
	.type f, @function
f:
	pushq %rbp
	movq %rsp, %rbp
	subq $112, %rsp
.Lf_B1:
	movq %rdi, -72(%rbp)
	movsd %xmm0, -8(%rbp)
	movq %rsi, -80(%rbp)
	movsd %xmm1, -16(%rbp)
	movq %rdx, -88(%rbp)
	movsd %xmm2, -24(%rbp)
	movq %rcx, -96(%rbp)
	movsd %xmm3, -32(%rbp)
	movq %r8, -104(%rbp)
	movsd %xmm4, -40(%rbp)
	movq %r9, -112(%rbp)
	movsd %xmm5, -48(%rbp)
	movsd %xmm6, -56(%rbp)
	movsd %xmm7, -64(%rbp)
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
	subq $16, %rsp
.Lmain_B1:
	movq $1, %rdi
	movsd .LCD0(%rip), %xmm0
	movq $2, %rsi
	movsd .LCD1(%rip), %xmm1
	movq $3, %rdx
	movsd .LCD2(%rip), %xmm2
	movq $4, %rcx
	movsd .LCD3(%rip), %xmm3
	movq $5, %r8
	movsd .LCD4(%rip), %xmm4
	movq $6, %r9
	movsd .LCD5(%rip), %xmm5
	movsd .LCD6(%rip), %xmm6
	movsd .LCD7(%rip), %xmm7
	call f@PLT
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
	.double 1.5
.LCD2:
	.double 2.5
.LCD3:
	.double 3.5
.LCD4:
	.double 4.5
.LCD5:
	.double 5.5
.LCD6:
	.double 6.5
.LCD7:
	.double 7.5
	.section .note.GNU-stack,"",@progbits
