	.text

	.globl f
	.type f, @function
f:
	pushq %rbp
	movq %rsp, %rbp
	subq $48, %rsp
.Lf_B1:
	movq %rdi, -24(%rbp)
	movq %rsi, -32(%rbp)
	movsd .LCD0(%rip), %xmm0
	movsd %xmm0, -8(%rbp)
	movsd .LCD0(%rip), %xmm0
	movsd %xmm0, -16(%rbp)
	movq -24(%rbp), %rdi
	call krel_inttostring@PLT
	movq %rax, -8(%rbp)
	movq -8(%rbp), %rax
	movq %rax, -40(%rbp)
	movq -32(%rbp), %rdi
	movq -32(%rbp), %rsi
	call krel_concat@PLT
	movq %rax, -16(%rbp)
	movq -16(%rbp), %rax
	movq %rax, -48(%rbp)
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
