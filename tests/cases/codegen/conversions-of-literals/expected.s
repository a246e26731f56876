	.text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $128, %rsp
.Lmain_B1:
	movq $3, %rax
	cvtsi2sdq %rax, %xmm0
	movsd %xmm0, -8(%rbp)
	movsd -8(%rbp), %xmm0
	movsd %xmm0, -96(%rbp)
	movq $300, %rdi
	movq %rdi, -16(%rbp)
	movq -16(%rbp), %rax
	movq %rax, -88(%rbp)
	movq $99, %rdi
	movq %rdi, -24(%rbp)
	movq -24(%rbp), %rax
	movq %rax, -104(%rbp)
	movq $7, %rdi
	call krel_inttostring@PLT
	movq %rax, -32(%rbp)
	movsd .LCD0(%rip), %xmm0
	call krel_doubletostring@PLT
	movq %rax, -40(%rbp)
	movq $1, %rdi
	call krel_booltostring@PLT
	movq %rax, -48(%rbp)
	movq $120, %rdi
	call krel_chartostring@PLT
	movq %rax, -56(%rbp)
	movq -32(%rbp), %rdi
	movq -40(%rbp), %rsi
	call krel_concat@PLT
	movq %rax, -64(%rbp)
	movq -64(%rbp), %rdi
	movq -48(%rbp), %rsi
	call krel_concat@PLT
	movq %rax, -72(%rbp)
	movq -72(%rbp), %rdi
	movq -56(%rbp), %rsi
	call krel_concat@PLT
	movq %rax, -80(%rbp)
	movq -80(%rbp), %rdi
	call krel_print@PLT
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main

	.section .rodata
.LCD0:
	.double 2.5
	.section .note.GNU-stack,"",@progbits
