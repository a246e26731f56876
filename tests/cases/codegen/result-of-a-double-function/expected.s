	.text

	.globl f
	.type f, @function
f:
	pushq %rbp
	movq %rsp, %rbp
	subq $16, %rsp
.Lf_B1:
	movq %rdi, -8(%rbp)
	movsd .LCD0(%rip), %xmm0
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
	movq $2, %rdi
	call f@PLT
	movsd %xmm0, -8(%rbp)
	movsd -8(%rbp), %xmm0
	movsd .LCD1(%rip), %xmm1
	addsd %xmm1, %xmm0
	movsd %xmm0, -16(%rbp)
	movsd -16(%rbp), %xmm0
	movsd %xmm0, -24(%rbp)
	xorl %edi, %edi
	call exit@PLT
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
	.section .note.GNU-stack,"",@progbits
