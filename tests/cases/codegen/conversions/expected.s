	.text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $128, %rsp
.Lmain_B1:
	movq $300, %rax
	movq %rax, -88(%rbp)
	movq -88(%rbp), %rax
	cvtsi2sdq %rax, %xmm0
	movsd %xmm0, -8(%rbp)
	movsd -8(%rbp), %xmm0
	movsd %xmm0, -80(%rbp)
	movq -88(%rbp), %rdi
	movq %rdi, -16(%rbp)
	movq -16(%rbp), %rax
	movq %rax, -72(%rbp)
	movq -72(%rbp), %rdi
	movq %rdi, -24(%rbp)
	movq -24(%rbp), %rax
	movq %rax, -96(%rbp)
	movq -88(%rbp), %rdi
	call krel_inttostring@PLT
	movq %rax, -32(%rbp)
	movq -32(%rbp), %rax
	movq %rax, -104(%rbp)
	leaq .LC0(%rip), %rax
	movq %rax, -104(%rbp)
	movsd -80(%rbp), %xmm0
	call krel_doubletostring@PLT
	movq %rax, -40(%rbp)
	movq -40(%rbp), %rax
	movq %rax, -112(%rbp)
	movq $1, %rax
	movq %rax, -64(%rbp)
	movq -64(%rbp), %rdi
	call krel_booltostring@PLT
	movq %rax, -48(%rbp)
	movq -48(%rbp), %rax
	movq %rax, -120(%rbp)
	movq -72(%rbp), %rdi
	call krel_chartostring@PLT
	movq %rax, -56(%rbp)
	movq -56(%rbp), %rax
	movq %rax, -128(%rbp)
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main

	.section .rodata
.LC0:
	.string ""
	.section .note.GNU-stack,"",@progbits
