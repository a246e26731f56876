	.text

	.globl f
	.type f, @function
f:
	pushq %rbp
	movq %rsp, %rbp
	subq $32, %rsp
.Lf_B1:
	movq %rdi, -16(%rbp)
	movq -16(%rbp), %rax
	movq $2, %rcx
	addq %rcx, %rax
	movq %rax, -8(%rbp)
	movsd -8(%rbp), %xmm0
	movsd %xmm0, -24(%rbp)
	movsd .LCD0(%rip), %xmm0
	movsd %xmm0, -8(%rbp)
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
